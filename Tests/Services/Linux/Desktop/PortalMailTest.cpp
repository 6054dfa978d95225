#include "Linux/Desktop/PortalMail.h"

#include "Bus/TestBus.h"
#include "Linux/Bus/FirstWait.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>

namespace {

/// On a machine without a portal, and with the programs that the test writes.
class MailWithoutPortal : public ::testing::Test {
protected:
    ~MailWithoutPortal() override { setenv("PATH", _path.c_str(), 1); }

    void writeMailProgram(const std::string& script)
    {
        folder.write("xdg-email", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(folder.path("xdg-email"), std::filesystem::perms::owner_all);
    }

    void useBusAt(const std::string& address)
    {
        setenv("PATH", folder.path().c_str(), 1);
        bus = std::make_shared<Bus>(context, address);
        requests = std::make_shared<DesktopRequests>(bus);
        _mail = std::make_unique<PortalMail>(requests, [this](const std::string& path) { return folder.path(path); });
    }

    bool compose(const std::string& attachment = "file")
    {
        return _mail->compose({ "a@mail.example", "subject", "", { attachment }, [this] { ++failures; } });
    }

    bool comes(const std::function<bool()>& isSo) { return comesTrue(*context, isSo); }
    bool hasRun() const { return std::filesystem::exists(folder.path("mark")); }
    /// What the mail program does to leave a mark.
    std::string leaveMark() const { return ": >'" + folder.path("mark") + "'"; }

    TemporaryDirectory folder;
    const std::shared_ptr<BusContext> context = std::make_shared<BusContext>();
    std::shared_ptr<Bus> bus;
    std::shared_ptr<DesktopRequests> requests;
    int failures = 0;

private:
    std::unique_ptr<PortalMail> _mail;
    std::string _path = std::getenv("PATH");
};

TEST_F(MailWithoutPortal, RegularFileIsAttached)
{
    useBusAt("");
    folder.write("file", "x");
    writeMailProgram(leaveMark());
    EXPECT_TRUE(compose());
    EXPECT_TRUE(comes([this] { return hasRun(); }));
    EXPECT_EQ(failures, 0);
}

TEST_F(MailWithoutPortal, PipeIsNotWaitedFor)
{
    useBusAt("");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(compose("pipe"));
}

TEST_F(MailWithoutPortal, DirectoryAndMissingFile)
{
    useBusAt("");
    std::filesystem::create_directory(folder.path("directory"));
    EXPECT_FALSE(compose("directory"));
    EXPECT_FALSE(compose("missing"));
}

TEST_F(MailWithoutPortal, ProgramThatFailsIsToldOfOnceAndInATurn)
{
    useBusAt("");
    folder.write("file", "x");
    writeMailProgram(leaveMark() + "\nexit 3");
    EXPECT_TRUE(compose());
    EXPECT_EQ(failures, 0);
    EXPECT_TRUE(comes([this] { return failures > 0; }));
    context->takeIn();
    EXPECT_EQ(failures, 1);
    EXPECT_TRUE(hasRun());
}

TEST_F(MailWithoutPortal, NoProgram)
{
    useBusAt("");
    folder.write("file", "x");
    EXPECT_TRUE(compose());
    EXPECT_TRUE(comes([this] { return failures == 1; }));
}

TEST_F(MailWithoutPortal, ProgramThatCannotBeStarted)
{
    useBusAt("");
    folder.write("file", "x");
    folder.write("xdg-email", "#!/nowhere\n");
    std::filesystem::permissions(folder.path("xdg-email"), std::filesystem::perms::owner_all);
    EXPECT_TRUE(compose());
    EXPECT_TRUE(comes([this] { return failures == 1; }));
}

TEST_F(MailWithoutPortal, FoldersThatAreNotAbsoluteHaveNoPrograms)
{
    useBusAt("");
    writeMailProgram("exit 0");
    const std::string program = folder.path("xdg-email");
    EXPECT_EQ(pathOfProgram("xdg-email"), program);
    EXPECT_EQ(pathOfProgram(program), program);
    std::filesystem::current_path(folder.path());
    setenv("PATH", ".::", 1);
    EXPECT_EQ(pathOfProgram("xdg-email"), "");
    EXPECT_EQ(pathOfProgram("./xdg-email"), "");
    setenv("PATH", ("relative:" + folder.path()).c_str(), 1);
    EXPECT_EQ(pathOfProgram("xdg-email"), program);
    EXPECT_EQ(pathOfProgram("./xdg-email"), "");
    std::filesystem::create_directory(folder.path("directory"));
    folder.write("text", "x");
    EXPECT_EQ(pathOfProgram("directory"), "");
    EXPECT_EQ(pathOfProgram("text"), "");
    std::filesystem::current_path("/");
}

TEST_F(MailWithoutPortal, BusThatHangsIsNotWaitedForByTheMail)
{
    const SilentBus silent;
    useBusAt(silent.address());
    folder.write("file", "x");
    writeMailProgram(leaveMark());
    EXPECT_TRUE(compose());
    EXPECT_TRUE(comes([this] { return hasRun(); }));
    EXPECT_TRUE(bus->isOpening());
}

TEST_F(MailWithoutPortal, MailIsHandedOnBeforeTheEndThoughTheBusHangs)
{
    const SilentBus silent;
    useBusAt(silent.address());
    folder.write("file", "x");
    writeMailProgram(leaveMark());
    EXPECT_TRUE(compose());
    requests->finish();
    requests.reset();
    EXPECT_TRUE(comes([this] { return hasRun(); }));
}

TEST_F(MailWithoutPortal, EndIsNotDelayedWithNothingUnderWay)
{
    const SilentBus silent;
    useBusAt(silent.address());
    bus->open();
    const auto start = BusContext::Clock::now();
    requests->finish();
    EXPECT_LT(BusContext::Clock::now() - start, FirstWait::longest / 2);
}

TEST_F(MailWithoutPortal, BusThatHangsWhileAMailIsUnderWayIsNotWaitedForAtTheEnd)
{
    TestBus daemon;
    useBusAt(daemon.address());
    bus->open();
    ASSERT_TRUE(comes([this] { return bus->isConnected(); }));
    folder.write("file", "x");
    daemon.hang();
    EXPECT_TRUE(compose());
    const auto start = BusContext::Clock::now();
    requests->finish();
    EXPECT_LT(BusContext::Clock::now() - start, std::chrono::seconds(2));
}

} // namespace
