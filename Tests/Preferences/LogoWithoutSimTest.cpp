#include "Support/PageTest.h"
#include "TDSimSettingsController.h"

namespace {

constexpr const char* nullLogo = "/var/mobile/Library/Preferences/Tandem/(null).png";

/// The buttons and the picker of the SIM page, without a SIM behind them.
class LogoWithoutASim : public PageTest {
protected:
    LogoWithoutASim()
    {
        phone.writePage("Root", {});
        page = open<TDSimSettingsController>();
        phone.log->lines.clear();
    }

    std::shared_ptr<UIAlertController> sheet() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(page->presentedViewController());
    }
    Strings actions() const
    {
        Strings titles;
        for (const UIAlertAction& action : sheet()->actions())
            titles.push_back(action.title);
        return titles;
    }

    std::shared_ptr<TDSimSettingsController> page;
};

TEST_F(LogoWithoutASim, SheetOfARowThatIsMissingOrStandsForNoSimSpeaksOfThisCarrier)
{
    const Row withoutSim = PSSpecifier::emptyGroupSpecifier();
    const Row withAnotherObject = PSSpecifier::emptyGroupSpecifier();
    withAnotherObject->setUserInfo(withoutSim);
    for (const Row& row : { Row(), withoutSim, withAnotherObject }) {
        page->changeCarrierLogo(row);
        ASSERT_TRUE(sheet());
        EXPECT_EQ(sheet()->title(), "Pairo");
        EXPECT_EQ(sheet()->message(),
            "Would you like to change the image of this carrier? It will appear in SIM selection window for both Calls "
            "& Messages.");
        EXPECT_EQ(actions(), (Strings { "Change", "Cancel" }));
        sheet()->chooseAction(1);
    }
    EXPECT_EQ(
        screen->lines, (Strings { "sheet Pairo", "dismiss", "sheet Pairo", "dismiss", "sheet Pairo", "dismiss" }));
}

TEST_F(LogoWithoutASim, ChangeForgetsTheSimOfBeforeAndShowsThePicker)
{
    page->setCurrentSubScriptionContext("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");
    page->changeCarrierLogo(nullptr);
    ASSERT_TRUE(sheet());
    sheet()->chooseAction(0);
    EXPECT_EQ(page->currentSubScriptionContext(), std::nullopt);
    EXPECT_EQ(screen->lines, (Strings { "sheet Pairo", "dismiss", "picker" }));
}

TEST_F(LogoWithoutASim, PickIsStoredUnderTheNameThatTheFormatGivesToNull)
{
    page->showImagePicker();
    const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(page->presentedViewController());
    screen->lines.clear();
    picker->finishPickingImage(UIImage::imageWithData(phone.png(7, 9)));
    EXPECT_EQ(screen->lines, (Strings { "reload", "dismiss" }));
    EXPECT_EQ(phone.log->lines,
        (Strings { std::string("***** Saving image to : ") + nullLogo, "**************** subscriptions: (\n)" }));
    const auto logo = UIImage::imageWithContentsOfFile(nullLogo);
    ASSERT_TRUE(logo);
    EXPECT_EQ(logo->size(), (CGSize { 7, 9 }));
}

TEST_F(LogoWithoutASim, ResetIsOfferedForALogoOfThatNameAndRemovesIt)
{
    phone.writeFile(nullLogo, phone.png(2, 2));
    page->changeCarrierLogo(nullptr);
    ASSERT_TRUE(sheet());
    EXPECT_EQ(actions(), (Strings { "Change", "Reset", "Cancel" }));
    screen->lines.clear();
    sheet()->chooseAction(1);
    EXPECT_FALSE(phone.files->exists(nullLogo));
    EXPECT_EQ(screen->lines, (Strings { "dismiss", "reload" }));
}

TEST_F(LogoWithoutASim, ResetOfALogoOfThatNameThatIsGoneLogsItsPath)
{
    phone.writeFile(nullLogo, phone.png(2, 2));
    page->changeCarrierLogo(nullptr);
    phone.files->remove(nullLogo);
    ASSERT_TRUE(sheet());
    sheet()->chooseAction(1);
    EXPECT_EQ(phone.log->lines,
        Strings { std::string("com.vexil.Pairo => Error: While removing item at path '") + nullLogo
            + "' error => “(null).png” couldn’t be removed: No such file or directory." });
}

TEST_F(LogoWithoutASim, PickWithoutAnImageStoresNothing)
{
    page->imagePickerController_didFinishPickingMediaWithInfo(nullptr, {});
    EXPECT_EQ(screen->lines, Strings {});
    EXPECT_FALSE(phone.files->exists("/var/mobile/Library/Preferences/Tandem"));
}

} // namespace
