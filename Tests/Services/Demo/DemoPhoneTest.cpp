#include "DemoFolder.h"

#include <sys/stat.h>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t hostileDepth = 120'000;
constexpr std::size_t longestMessage = 400;

std::string times(std::size_t count, const std::string& text)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

class DemoPhoneFile : public DemoFolder {
protected:
    /// Why the file of that name describes no phone.
    static std::string faultOfFile(const std::string& file)
    {
        const auto demo = DemoPhone::open(file);
        return demo ? "" : demo.failure().text;
    }
};

} // namespace

TEST_F(DemoPhoneFile, WholePhone)
{
    const auto demo = open(R"({
        "appearance": "dark", "textScale": 1.5, "reducedMotion": true, "scale": 3,
        "subscriptions": [
            {"uuid": "A-1", "label": "Personal", "phoneNumber": "+12025550143", "carrier": "Larkspur", "userDefaultVoice": true},
            {"uuid": "B-2"}],
        "pairedDevices": [{"name": "Car", "address": "12:34:56:AB:CD:01"}, {"name": "", "address": "x"}],
        "homeScreen": {"org.example.App": "app.png"},
        "photos": ["a.png", "more/b.jpg"]})");
    const Phone phone = demo->phone();

    EXPECT_TRUE(phone.appearance->isDark());
    EXPECT_EQ(phone.appearance->textScale(), 1.5);
    EXPECT_TRUE(phone.appearance->isMotionReduced());
    EXPECT_EQ(phone.screenScale, 3);
    const std::vector<Subscription> sims { { "A-1", "Personal", "+12025550143", "Larkspur", true },
        { "B-2", std::nullopt, std::nullopt, std::nullopt, false } };
    EXPECT_EQ(phone.subscriptions->subscriptions(), sims);
    ASSERT_EQ(phone.pairedDevices->devices().size(), 2U);
    EXPECT_EQ(phone.pairedDevices->devices()[0].name, "Car");
    EXPECT_EQ(phone.pairedDevices->devices()[0].address, "12:34:56:AB:CD:01");
    EXPECT_EQ(phone.pairedDevices->devices()[1].name, "");
    EXPECT_TRUE(phone.homeScreen);
    EXPECT_TRUE(phone.darwinNotifications);
    EXPECT_EQ(demo->photos(), (std::vector<std::string> { path("a.png"), path("more/b.jpg") }));
}

TEST_F(DemoPhoneFile, WhatTheCallerAddsIsLeftOut)
{
    const Phone phone = open("{}")->phone();
    EXPECT_FALSE(phone.propertyLists);
    EXPECT_FALSE(phone.files);
    EXPECT_FALSE(phone.images);
    EXPECT_FALSE(phone.systemLog);
    EXPECT_FALSE(phone.textMeasure);
}

TEST_F(DemoPhoneFile, MissingKeys)
{
    const auto demo = open("{}");
    const Phone phone = demo->phone();
    EXPECT_FALSE(phone.appearance);
    EXPECT_FALSE(phone.subscriptions);
    EXPECT_FALSE(phone.pairedDevices);
    EXPECT_FALSE(phone.homeScreen);
    EXPECT_EQ(phone.screenScale, 2);
    EXPECT_TRUE(demo->photos().empty());
}

TEST_F(DemoPhoneFile, NullInPlaceOfServices)
{
    const auto demo = open(R"({"appearance": null, "scale": null, "subscriptions": null, "pairedDevices": null,
        "homeScreen": null, "photos": null})");
    const Phone phone = demo->phone();
    EXPECT_FALSE(phone.appearance);
    EXPECT_FALSE(phone.subscriptions);
    EXPECT_FALSE(phone.pairedDevices);
    EXPECT_FALSE(phone.homeScreen);
    EXPECT_EQ(phone.screenScale, 2);
    EXPECT_TRUE(demo->photos().empty());
}

TEST_F(DemoPhoneFile, AppearanceOfWhichAPartIsSaid)
{
    const auto looksOf = [this](const char* text) {
        const auto appearance = open(text)->phone().appearance;
        return std::tuple(appearance->isDark(), appearance->textScale(), appearance->isMotionReduced());
    };
    EXPECT_EQ(looksOf(R"({"appearance": "dark"})"), std::tuple(true, 1.0, false));
    EXPECT_EQ(looksOf(R"({"textScale": 0.5})"), std::tuple(false, 0.5, false));
    EXPECT_EQ(looksOf(R"({"reducedMotion": true})"), std::tuple(false, 1.0, true));
}

TEST_F(DemoPhoneFile, NullInsideSim)
{
    const Phone phone = open(R"({"subscriptions": [
        {"uuid": "A", "label": null, "phoneNumber": null, "carrier": null, "userDefaultVoice": null}]})")
                            ->phone();
    const std::vector<Subscription> sims { { "A", std::nullopt, std::nullopt, std::nullopt, false } };
    EXPECT_EQ(phone.subscriptions->subscriptions(), sims);
}

TEST_F(DemoPhoneFile, EmptyTextIsNoAbsentText)
{
    const Phone phone = open(R"({"subscriptions": [{"uuid": "", "label": ""}]})")->phone();
    EXPECT_EQ(phone.subscriptions->subscriptions().front().label, "");
}

TEST_F(DemoPhoneFile, EmptyListsAreServicesWithNothing)
{
    const Phone phone = open(R"({"subscriptions": [], "pairedDevices": [], "homeScreen": {}})")->phone();
    EXPECT_TRUE(phone.subscriptions->subscriptions().empty());
    EXPECT_TRUE(phone.pairedDevices->devices().empty());
    EXPECT_TRUE(phone.homeScreen);
}

TEST_F(DemoPhoneFile, WrongTypes)
{
    const std::vector<std::pair<std::string, std::string>> faults {
        { "[]", "expected an object, found a list" },
        { "null", "expected an object, found nothing" },
        { "3", "expected an object, found a number" },
        { R"({"appearance": true})", "/appearance: expected a string, found true or false" },
        { R"({"appearance": "Dark"})", R"(/appearance: expected "light" or "dark")" },
        { R"({"scale": "2"})", "/scale: expected a number, found a string" },
        { R"({"scale": 0})", "/scale: expected a number from 1 to 8" },
        { R"({"scale": -2})", "/scale: expected a number from 1 to 8" },
        { R"({"scale": 1e300})", "/scale: expected a number from 1 to 8" },
        { R"({"textScale": true})", "/textScale: expected a number, found true or false" },
        { R"({"textScale": 0.4})", "/textScale: expected a number from 0.5 to 3" },
        { R"({"textScale": 3.1})", "/textScale: expected a number from 0.5 to 3" },
        { R"({"reducedMotion": 1})", "/reducedMotion: expected true or false, found a number" },
        { R"({"subscriptions": {}})", "/subscriptions: expected a list, found an object" },
        { R"({"subscriptions": [{"uuid": "A"}, 7]})", "/subscriptions/1: expected an object, found a number" },
        { R"({"subscriptions": [{}]})", "/subscriptions/0/uuid: expected a string, found nothing" },
        { R"({"subscriptions": [{"uuid": null}]})", "/subscriptions/0/uuid: expected a string, found nothing" },
        { R"({"subscriptions": [{"uuid": "A", "label": 1}]})",
            "/subscriptions/0/label: expected a string, found a number" },
        { R"({"subscriptions": [{"uuid": "A", "userDefaultVoice": 1}]})",
            "/subscriptions/0/userDefaultVoice: expected true or false, found a number" },
        { R"({"pairedDevices": [null]})", "/pairedDevices/0: expected an object, found nothing" },
        { R"({"pairedDevices": [{"name": "Car"}]})", "/pairedDevices/0/address: expected a string, found nothing" },
        { R"({"homeScreen": []})", "/homeScreen: expected an object, found a list" },
        { R"({"homeScreen": {"org.example.App": []}})",
            "/homeScreen/org.example.App: expected a string, found a list" },
        { R"({"photos": "a.png"})", "/photos: expected a list, found a string" },
        { R"({"photos": [null]})", "/photos/0: expected a string, found nothing" },
    };
    for (const auto& [text, fault] : faults)
        EXPECT_EQ(faultOf(text), fault) << text;
}

TEST_F(DemoPhoneFile, UnknownKeys)
{
    EXPECT_EQ(faultOf(R"({"colour": "dark"})"), "/colour: unknown key");
    EXPECT_EQ(faultOf(R"({"subscriptions": [{"uuid": "A", "lable": "x"}]})"), "/subscriptions/0/lable: unknown key");
    EXPECT_EQ(faultOf(R"({"pairedDevices": [{"name": "", "address": "", "": 1}]})"), "/pairedDevices/0/: unknown key");
}

TEST_F(DemoPhoneFile, BrokenJson)
{
    EXPECT_EQ(faultOf(""), "line 1, column 1: not valid JSON");
    EXPECT_EQ(faultOf("{\n  \"scale\": 2,\n}"), "line 3, column 1: not valid JSON");
    EXPECT_EQ(faultOf("{\"scale\": 2"), "line 1, column 12: not valid JSON");
    EXPECT_EQ(faultOf("{} {}"), "line 1, column 4: not valid JSON");
    EXPECT_EQ(faultOf("{\"photos\": [\"\xFF\"]}"), "line 1, column 14: not valid JSON");
    EXPECT_EQ(faultOf(std::string("{}\n\0{}", 6)), "line 2, column 1: not valid JSON");
    EXPECT_EQ(faultOf(R"({"scale": 1e999})"), "not valid JSON: a number is out of range");
}

TEST_F(DemoPhoneFile, HostileDepth)
{
    const std::string open = times(hostileDepth, "[");
    const std::string close = times(hostileDepth, "]");
    EXPECT_EQ(faultOf(open + close), "expected an object, found a list");
    EXPECT_EQ(faultOf(R"({"photos": )" + open + close + "}"), "/photos/0: expected a string, found a list");
    EXPECT_EQ(faultOf(R"({"surprise": )" + open + close + "}"), "/surprise: unknown key");
    EXPECT_EQ(faultOf(open), "line 1, column 120001: not valid JSON");
    EXPECT_EQ(faultOf(times(hostileDepth / 3, R"({"":)")), "line 1, column 160001: not valid JSON");
}

TEST_F(DemoPhoneFile, FaultIsOneLineWhateverTheKeyHolds)
{
    const std::string fault = faultOf(R"({"homeScreen": {"a\nb\u0000c\u007f)" + times(1000, "\xC3\xA9") + R"(": 1}})");
    EXPECT_TRUE(fault.starts_with("/homeScreen/a b c \xC3\xA9")) << fault;
    EXPECT_TRUE(fault.ends_with("\xC3\xA9...")) << fault;
    EXPECT_LT(fault.size(), longestMessage);
}

TEST_F(DemoPhoneFile, TooLarge)
{
    EXPECT_EQ(faultOf("{}" + std::string(2U << 20U, ' ')), "too large");
}

TEST_F(DemoPhoneFile, NoFile)
{
    EXPECT_EQ(faultOfFile(path("nowhere.json")), path("nowhere.json") + ": no such file");
    EXPECT_EQ(faultOfFile(path("phone.json/inside")), path("phone.json/inside") + ": no such file");
    EXPECT_EQ(faultOfFile(""), ": no such file");
}

TEST_F(DemoPhoneFile, NoRegularFile)
{
    EXPECT_EQ(faultOfFile(path("")), path("") + ": not a regular file");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_EQ(faultOfFile(path("pipe")), path("pipe") + ": not a regular file");
}

TEST_F(DemoPhoneFile, PhotosStandBesideTheFile)
{
    const auto demo = open(R"({"photos": ["a.png", "./in/../b.png", "/somewhere/c.png", ""]})");
    const std::vector<std::string> photos { path("a.png"), path("b.png"), "/somewhere/c.png", path("") };
    EXPECT_EQ(demo->photos(), photos);
}

TEST_F(DemoPhoneFile, PhotosOfFileNamedFromTheWorkingDirectory)
{
    write("phone.json", R"({"photos": ["a.png"]})");
    const std::string name = std::filesystem::relative(path("phone.json")).string();
    const auto demo = DemoPhone::open(name);
    ASSERT_TRUE(demo) << demo.failure().text;
    EXPECT_EQ((*demo)->photos(), std::vector<std::string> { path("a.png") });
}

TEST_F(DemoPhoneFile, MailAndLinksAreKept)
{
    const auto demo = open("{}");
    const Phone phone = demo->phone();
    EXPECT_TRUE(phone.mail->compose({ "a@example.org", "Log", "", { "/log" } }));
    EXPECT_TRUE(phone.mail->compose({ "b@example.org", "Log", "", {} }));
    EXPECT_TRUE(phone.links->open("https://example.org/", nullptr));
    ASSERT_EQ(demo->drafts().size(), 2U);
    EXPECT_EQ(demo->drafts()[0].recipient, "a@example.org");
    EXPECT_EQ(demo->drafts()[0].attachments, std::vector<std::string> { "/log" });
    EXPECT_EQ(demo->drafts()[1].recipient, "b@example.org");
    EXPECT_EQ(demo->openedLinks(), std::vector<std::string> { "https://example.org/" });
}

TEST_F(DemoPhoneFile, ServicesOutliveThePhone)
{
    auto demo = open(R"({"appearance": "dark", "pairedDevices": []})");
    const Phone phone = demo->phone();
    demo.reset();
    EXPECT_TRUE(phone.appearance->isDark());
    EXPECT_TRUE(phone.pairedDevices->devices().empty());
    EXPECT_TRUE(phone.links->open("https://example.org/", nullptr));
}
