#include "Shared/UserLanguages.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace {

using Languages = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

constexpr std::array names { "LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE" };

/// Puts the environment back that the test began with.
class LanguagesOfTheUser : public testing::Test {
protected:
    LanguagesOfTheUser()
    {
        for (const char* name : names) {
            const char* value = std::getenv(name);
            before[name] = value ? std::optional<std::string>(value) : std::nullopt;
        }
    }
    ~LanguagesOfTheUser() override
    {
        for (const auto& [name, value] : before) {
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
        }
    }

    static Languages languagesIn(const Environment& environment)
    {
        for (const char* name : names)
            unsetenv(name);
        for (const auto& [name, value] : environment)
            setenv(name.c_str(), value.c_str(), 1);
        return userLanguages();
    }

    std::map<std::string, std::optional<std::string>> before;
};

TEST_F(LanguagesOfTheUser, AreThoseOfTheLocale)
{
    EXPECT_EQ(languagesIn({ { "LANG", "de_AT.UTF-8" } }), (Languages { "de-AT", "de" }));
    EXPECT_EQ(languagesIn({ { "LANG", "fr" } }), Languages { "fr" });
    EXPECT_EQ(languagesIn({ { "LANG", "sr_RS@latin" } }), (Languages { "sr-RS", "sr" }));
    EXPECT_EQ(languagesIn({ { "LANG", "en_GB.UTF-8" } }), (Languages { "en-GB", "en" }));
}

TEST_F(LanguagesOfTheUser, AreThoseOfTheFirstVariableThatNamesALocale)
{
    EXPECT_EQ(languagesIn({ { "LC_ALL", "de" }, { "LC_MESSAGES", "fr" }, { "LANG", "it" } }), Languages { "de" });
    EXPECT_EQ(languagesIn({ { "LC_ALL", "" }, { "LC_MESSAGES", "fr" }, { "LANG", "it" } }), Languages { "fr" });
    EXPECT_EQ(languagesIn({ { "LC_MESSAGES", "" }, { "LANG", "it" } }), Languages { "it" });
}

TEST_F(LanguagesOfTheUser, AreNoneInTheCLocale)
{
    for (const char* locale : { "C", "POSIX", "C.UTF-8", "" }) {
        EXPECT_EQ(languagesIn({ { "LANG", locale } }), Languages {}) << locale;
        EXPECT_EQ(languagesIn({ { "LANG", locale }, { "LANGUAGE", "de:fr" } }), Languages {}) << locale;
    }
    EXPECT_EQ(languagesIn({}), Languages {});
    EXPECT_EQ(languagesIn({ { "LANGUAGE", "de" } }), Languages {});
    EXPECT_EQ(languagesIn({ { "LC_ALL", "C" }, { "LANG", "de_DE" }, { "LANGUAGE", "de" } }), Languages {});
}

TEST_F(LanguagesOfTheUser, AreThoseOfTheListInPlaceOfTheLocale)
{
    const auto languagesOf = [](const std::string& list) {
        return languagesIn({ { "LANG", "en_US.UTF-8" }, { "LANGUAGE", list } });
    };
    EXPECT_EQ(languagesOf("de"), Languages { "de" });
    EXPECT_EQ(languagesOf("de_AT:fr_CA.UTF-8:it"), (Languages { "de-AT", "de", "fr-CA", "fr", "it" }));
    EXPECT_EQ(languagesOf("de_DE:de:fr"), (Languages { "de-DE", "de", "fr" }));
    EXPECT_EQ(languagesOf(":de::fr:"), (Languages { "de", "fr" }));
    EXPECT_EQ(languagesOf(""), (Languages { "en-US", "en" }));
    EXPECT_EQ(languagesOf(":"), Languages {});
}

TEST_F(LanguagesOfTheUser, EndWhereTheTextsAreWanted)
{
    const auto languagesOf = [](const std::string& list) {
        return languagesIn({ { "LANG", "de_DE.UTF-8" }, { "LANGUAGE", list } });
    };
    EXPECT_EQ(languagesOf("fr:C:it"), Languages { "fr" });
    EXPECT_EQ(languagesOf("POSIX:it"), Languages {});
    EXPECT_EQ(languagesOf("fr:en_GB:it"), (Languages { "fr", "en-GB", "en" }));
    EXPECT_EQ(languagesOf("en:fr"), Languages { "en" });
}

} // namespace
