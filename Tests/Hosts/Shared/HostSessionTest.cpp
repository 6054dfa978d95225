#include "Shared/HostSession.h"

#include "Shared/BundleLoader.h"
#include "UIKit/UIImage.h"
#include "libtandem/TDProduct.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr const char* simPage = "TDSimSettingsController";
constexpr const char* phoneFile = R"({"subscriptions": [
    {"uuid": "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4", "label": "Home", "carrier": "Alpha", "phoneNumber": "1"}]})";

/// A session on a phone with a SIM, in a folder of its own.
class Session : public testing::Test {
protected:
    Session()
    {
        std::string pattern = (fs::temp_directory_path() / "tandem-test-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        std::ofstream(folder / "phone.json") << phoneFile;
        const fs::path bundle = folder / fs::path(TDProduct::bundlePath()).relative_path();
        fs::create_directories(bundle.parent_path());
        fs::create_directory_symlink(TANDEM_BUNDLE, bundle);

        HostOptions options;
        options.phone = folder / "phone.json";
        options.root = folder;
        options.provision = false;
        auto opened = HostSession::open(options, nullptr);
        EXPECT_TRUE(opened) << opened.failure().text;
        session = std::move(*opened);
        EXPECT_TRUE(session->openRootPage(nullptr, { 375, 667 }));
    }
    ~Session() override
    {
        session.reset();
        Phone::setCurrent({});
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    static void openContext() { UIGraphicsBeginImageContextWithOptions({ 10, 10 }, false, 1); }

    /// Has the page of SIMs show its first SIM, whose logo is drawn for it.
    void showSim()
    {
        const auto page = NSClassFromString(simPage)->allocAs<PSListController>();
        page->initForContentSize({ 375, 667 });
        EXPECT_TRUE(page->table().loadCellForRowAtIndexPath({ 0, 0 }));
    }

    fs::path folder;
    std::unique_ptr<HostSession> session;
};

TEST_F(Session, ATurnClosesTheImageContextsThatPagesLeaveOpen)
{
    std::size_t openInTurn = 0;
    session->turn([&] {
        showSim();
        openInTurn = UIGraphicsDrainImageContexts();
        openContext();
        openContext();
    });
    EXPECT_EQ(openInTurn, 1U);
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
}

TEST_F(Session, ATurnThatFailsClosesImageContextsToo)
{
    const auto done = session->turn([] {
        openContext();
        throw std::out_of_range("no such row");
    });
    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().text, "no such row");
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
}

TEST_F(Session, ChildrenOfAParentThatIgnoresThemAreHeardOf)
{
    std::signal(SIGCHLD, SIG_IGN);
    HostOptions options;
    options.phone = folder / "missing.json";
    EXPECT_FALSE(HostSession::open(options, nullptr));
    EXPECT_EQ(std::signal(SIGCHLD, SIG_DFL), SIG_DFL);
}

} // namespace
