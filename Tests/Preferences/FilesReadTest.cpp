#include "Support/AgedFiles.h"
#include "Support/PageTest.h"
#include "TDBluetoothDevicesController.h"
#include "TDCallsSettingsController.h"
#include "TDMessagesSettingsController.h"
#include "TDMiscSettingsController.h"
#include "TDSimSettingsController.h"

namespace {

/// The product's pages, on a phone whose files nobody has changed for long.
class FilesRead : public PageTest {
protected:
    FilesRead()
    {
        for (const char* name : { "Root", "Calls", "Messages", "Misc" })
            phone.copyPage(name);
        phone.installApp("org.gnome.Calls");
        phone.devices->addDevice("Car", "11:22:33:44:55:66");
        phone.subscriptions->addSim({ "6B29FC40-CA47-1067-B31D-00DD010662DA", "Home", "1", "Alpha", true });
        phone.translate("de", { { "Calls", "Anrufe" } });
        Phone::current().files = files;
    }

    /// Of each page of the product, open.
    std::vector<std::shared_ptr<PSListController>> everyPage()
    {
        return { openRoot(), open<TDCallsSettingsController>(), open<TDMessagesSettingsController>(),
            open<TDBluetoothDevicesController>(), open<TDSimSettingsController>(), open<TDMiscSettingsController>() };
    }

    const std::shared_ptr<AgedFiles> files = std::make_shared<AgedFiles>(Phone::current().files);
};

TEST_F(FilesRead, RowsAreBuiltAgainWithoutAnyFile)
{
    for (const auto& page : everyPage()) {
        files->takeRead();
        page->reloadSpecifiers();
        EXPECT_EQ(files->takeRead(), Strings {}) << page->isa().name();
    }
}

TEST_F(FilesRead, AChangedSwitchReadsTheSettingsAndNothingElse)
{
    openRoot();
    const auto calls = open<TDCallsSettingsController>();
    files->takeRead();
    moveSwitch(*calls, "ShowSimSlectionForCalls", false);
    EXPECT_EQ(files->takeRead(), Strings { TestPhone::settingsPath });
}

TEST_F(FilesRead, TheCellOfASimLooksForItsLogoEachTime)
{
    openRoot();
    const auto sims = open<TDSimSettingsController>();
    const std::string row = "SIM+6B29FC40-CA47-1067-B31D-00DD010662DA";
    const std::string logos = "/var/mobile/Library/Preferences/Tandem/";
    const Strings looked { logos + "6B29FC40-CA47-1067-B31D-00DD010662DA.png", logos + "alpha.png",
        std::string(TestPhone::bundlePath) + "/noimage3.png" };
    for (int i = 0; i < 2; ++i) {
        sims->reloadSpecifiers();
        files->takeRead();
        cellOf(*sims, row);
        EXPECT_EQ(files->takeRead(), looked);
    }
}

} // namespace
