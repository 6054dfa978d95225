#include "Linux/Desktop/KeyFile.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class KeyFiles : public ::testing::Test {
protected:
    std::string themeIn(const std::string& content)
    {
        folder.write("settings", content);
        return valueInKeyFile(folder.path("settings"), "Icons", "Theme");
    }

    TemporaryDirectory folder;
};

TEST_F(KeyFiles, ValueOfAKeyInItsGroup)
{
    EXPECT_EQ(themeIn("[General]\nTheme=no\n[Icons]\nOther=no\nTheme=yes\n[More]\nTheme=no\n"), "yes");
    EXPECT_EQ(themeIn("# a comment\n\n[Icons]\n# another\n Theme = with spaces \n"), "with spaces ");
    EXPECT_EQ(themeIn("[Icons]\nTheme=größer"), "größer");
}

TEST_F(KeyFiles, KeyOrGroupThatIsMissing)
{
    EXPECT_EQ(themeIn(""), "");
    EXPECT_EQ(themeIn("[Icons]\n"), "");
    EXPECT_EQ(themeIn("[Icons]\nTheme=\n"), "");
    EXPECT_EQ(themeIn("Theme=no\n"), "");
    EXPECT_EQ(themeIn("[Icons2]\nTheme=no\n"), "");
}

TEST_F(KeyFiles, GroupThatStandsTwice)
{
    EXPECT_EQ(themeIn("[Icons]\nTheme=first\n[Other]\nTheme=no\n[Icons]\nTheme=last\n"), "last");
}

TEST_F(KeyFiles, LinesOfOtherGroupsThatOnlyPlasmaKnows)
{
    EXPECT_EQ(themeIn("[Colors:Header][Inactive]\nA=1\n[$Version]\nupdate_info=x\n[Icons]\nTheme=yes\n[Icons][More]\n"
                      "Theme=no\n[KDE]\nwidgetStyle[$i]=x\nno value\n"),
        "yes");
}

TEST_F(KeyFiles, FileThatIsMissingOrNoneOrTooLarge)
{
    EXPECT_EQ(valueInKeyFile(folder.path("missing"), "Icons", "Theme"), "");
    EXPECT_EQ(valueInKeyFile(folder.path(), "Icons", "Theme"), "");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(valueInKeyFile(folder.path("pipe"), "Icons", "Theme"), "");
    const std::string group = "[Icons]\nTheme=yes\n";
    EXPECT_EQ(themeIn(group + std::string((1 << 20) - group.size(), '\n')), "yes");
    EXPECT_EQ(themeIn(group + std::string((1 << 20) - group.size() + 1, '\n')), "");
}

} // namespace
