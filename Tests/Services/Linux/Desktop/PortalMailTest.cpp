#include "Linux/Desktop/PortalMail.h"

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace {

/// On a machine without a bus, with a mail program that takes every draft.
class MailAttachments : public ::testing::Test {
protected:
    MailAttachments()
    {
        folder.write("xdg-email", "#!/bin/sh\n");
        std::filesystem::permissions(folder.path("xdg-email"), std::filesystem::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(folder.path()));
    }
    ~MailAttachments() override { qputenv("PATH", _path); }

    bool compose(const std::string& attachment)
    {
        return mail.compose({ "a@mail.example", "subject", "", { attachment } });
    }

    TemporaryDirectory folder;
    const std::shared_ptr<WaitBudget> budget = std::make_shared<WaitBudget>();
    PortalMail mail { BusCaller(QDBusConnection(QStringLiteral("none")), budget),
        std::make_shared<BackgroundActs>(budget), [this](const std::string& path) { return folder.path(path); } };

private:
    QByteArray _path = qgetenv("PATH");
};

TEST_F(MailAttachments, RegularFile)
{
    folder.write("file", "x");
    EXPECT_TRUE(compose("file"));
}

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
