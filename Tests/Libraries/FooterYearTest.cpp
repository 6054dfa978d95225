#include "Support/TestPhone.h"
#include "libvexil/VXMiscSettingsViewController.h"

#include <cstdlib>
#include <ctime>
#include <fstream>

namespace {

constexpr std::int32_t day = 24 * 60 * 60;

/// A page that notes the years of its footer.
class FooterPage final : public VXMiscSettingsViewController {
    NS_CLASS(FooterPage, VXMiscSettingsViewController)
public:
    std::vector<long> years;

    bool hasCustomNavigationBarColor() override { return false; }
    UIColor customNavigationBarColor() override { return {}; }
    std::string twitterMessage() override { return {}; }
    std::shared_ptr<UIImage> twitterImage() override { return nullptr; }
    Row copyRightSpecifier() override { return vx__specifierByIdentifier_identifier(specifiers(), "CopyRightHeader"); }
    std::string copryRightSpecifierText(long year) override
    {
        years.push_back(year);
        return std::to_string(year);
    }
    std::optional<std::string> specifiersFileName() override { return "Page"; }
};

NS_IMPLEMENTATION(FooterPage)

std::string bigEndian(std::uint32_t number)
{
    return { static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
        static_cast<char>(number) };
}

/// The description of a time zone whose clocks are always so many seconds ahead of universal time.
std::string timeZoneFile(std::int32_t ahead)
{
    const std::string name("XXX\0", 4);
    std::string file = "TZif" + std::string(16, '\0');
    for (const std::uint32_t count : { 0U, 0U, 0U, 0U, 1U, 4U })
        file += bigEndian(count);
    return file + bigEndian(static_cast<std::uint32_t>(ahead)) + std::string(2, '\0') + name;
}

/// The clocks of the process are so many seconds ahead of universal time while this lives.
class ClockAhead {
public:
    explicit ClockAhead(std::int32_t seconds)
    {
        const std::string path = (_folder.path() / "zone").string();
        std::ofstream(path, std::ios::binary) << timeZoneFile(seconds);
        setZone((":" + path).c_str());
    }
    ~ClockAhead() { setZone(_before ? _before->c_str() : nullptr); }
    ClockAhead(const ClockAhead&) = delete;
    ClockAhead& operator=(const ClockAhead&) = delete;

private:
    static void setZone(const char* zone)
    {
        if (zone)
            setenv("TZ", zone, 1);
        else
            unsetenv("TZ");
        tzset();
    }

    const std::optional<std::string> _before =
        std::getenv("TZ") ? std::optional<std::string>(std::getenv("TZ")) : std::nullopt;
    TemporaryDirectory _folder;
};

long universalYear(std::int32_t secondsFromNow)
{
    const std::time_t moment = std::time(nullptr) + secondsFromNow;
    return std::gmtime(&moment)->tm_year + 1900L;
}

TEST(FooterYear, IsTheYearOnTheUsersOwnClock)
{
    TestPhone phone(FooterPage::classObject());
    phone.writePage("Page", { item("PSGroupCell", "CopyRightHeader") });
    for (const std::int32_t ahead : { 400 * day, -400 * day }) {
        const ClockAhead clock(ahead);
        const auto page = std::make_shared<FooterPage>();
        page->initForContentSize({ 375, 667 });
        const long before = universalYear(ahead);
        std::make_shared<UINavigationController>()->pushViewController_animated(page, false);
        page->footerOfGroup(page->copyRightSpecifier());
        ASSERT_EQ(page->years.size(), 1U);
        EXPECT_GE(page->years[0], before);
        EXPECT_LE(page->years[0], universalYear(ahead));
    }
}

} // namespace
