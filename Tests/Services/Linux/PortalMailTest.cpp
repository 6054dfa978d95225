#include "Linux/PortalMail.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace {

/// Attachments that are none, on a machine without a bus.
class MailAttachments : public ::testing::Test {
protected:
    bool compose(const std::string& attachment)
    {
        return mail.compose({ "a@mail.example", "subject", "", { attachment } });
    }

    TemporaryDirectory folder;
    PortalMail mail { QDBusConnection(QStringLiteral("none")),
        std::make_shared<BackgroundActs>(std::make_shared<WaitBudget>()),
        [this](const std::string& path) { return folder.path(path); } };
};

TEST_F(MailAttachments, PipeIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(compose("pipe"));
}

TEST_F(MailAttachments, DirectoryAndMissingFile)
{
    std::filesystem::create_directory(folder.path("directory"));
    EXPECT_FALSE(compose("directory"));
    EXPECT_FALSE(compose("missing"));
}

} // namespace
