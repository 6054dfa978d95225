#include "Support/TestPhone.h"
#include "libtandem/TDUtils.h"
#include "libvexil/VXUtils.h"

namespace {

class Utilities : public ::testing::Test {
protected:
    TestPhone phone { PSSpecifier::classObject() };
};

TEST_F(Utilities, LogOneFilledLineACall)
{
    TDUtils::logMessage("plain", {});
    TDUtils::logMessage("%@ AND error: %@ (%ld)", { Dictionary { { "Key", 1 } }, Value(), 5 });
    TDUtils::logMessage("", {});
    EXPECT_EQ(phone.log->lines, (Strings { "plain", "{\n    Key = 1;\n} AND error: (null) (5)", "" }));
}

TEST_F(Utilities, LogNothingWithoutALog)
{
    Phone::current().systemLog = nullptr;
    TDUtils::logMessage("%@", { "line" });
    EXPECT_EQ(phone.log->lines, Strings {});
}

TEST_F(Utilities, AreDarkWhileTheSystemIs)
{
    EXPECT_FALSE(TDUtils::isDarkModeEnabled());
    phone.appearance->becomeDark();
    EXPECT_TRUE(TDUtils::isDarkModeEnabled());
    phone.appearance->becomeLight();
    EXPECT_FALSE(TDUtils::isDarkModeEnabled());
    phone.appearance->becomeDark();
    Phone::current().appearance = nullptr;
    EXPECT_FALSE(TDUtils::isDarkModeEnabled());
}

TEST_F(Utilities, ColourTheBarOfEveryClassTheSame)
{
    constexpr UIColor accent { 28 / 255.0F, 77 / 255.0F, 170 / 255.0F, 1 };
    EXPECT_EQ(TDUtils::navigationBarColor(PSListController::classObject()), accent);
    EXPECT_EQ(TDUtils::navigationBarColor(NSObject::classObject()), accent);
}

TEST_F(Utilities, FetchTheSimsInSlotOrderAtEachCall)
{
    const auto identifiers = [] {
        Strings found;
        for (const auto& context : TDUtils::fetchSubscriptions())
            found.push_back(context->uuid().UUIDString());
        return found;
    };
    EXPECT_EQ(identifiers(), Strings {});
    phone.subscriptions->addSim({ "B", "Work", "1", "Carrier", true });
    phone.subscriptions->addSim({ "A", std::nullopt, std::nullopt, std::nullopt, false });
    EXPECT_EQ(identifiers(), (Strings { "B", "A" }));
    phone.subscriptions->removeSim("B");
    EXPECT_EQ(identifiers(), Strings { "A" });
    Phone::current().subscriptions = nullptr;
    EXPECT_EQ(identifiers(), Strings {});
}

TEST_F(Utilities, GiveTheKeysOfSimsInUpperCase)
{
    phone.subscriptions->addSim({ "6b29fc40-ca47-1067-b31d-00dd010662da", "Work", "1", "Carrier", true });
    EXPECT_EQ(TDUtils::fetchSubscriptions().at(0)->uuid().UUIDString(), "6B29FC40-CA47-1067-B31D-00DD010662DA");
}

TEST_F(Utilities, NameTheCarrierWhereItIsKnown)
{
    const auto names = TDUtils::carrierBundleController();
    const auto nameOf = [&](std::optional<std::string> carrier) {
        return names->localizedCarrierNameForSubscriptionContext(std::make_shared<CTXPCServiceSubscriptionContext>(
            Subscription { "A", std::nullopt, std::nullopt, std::move(carrier), false }));
    };
    EXPECT_EQ(nameOf("Carrier"), "Carrier");
    EXPECT_EQ(nameOf(""), "");
    EXPECT_EQ(nameOf(std::nullopt), std::nullopt);
    EXPECT_EQ(names->localizedCarrierNameForSubscriptionContext(nullptr), std::nullopt);
}

TEST_F(Utilities, FormatNumbersAsTheServiceDoes)
{
    EXPECT_EQ(TDUtils::formattedPhoneNumber("0123"), "<0123>");
    EXPECT_EQ(TDUtils::formattedPhoneNumber(""), "<>");
    EXPECT_EQ(TDUtils::formattedPhoneNumber(std::nullopt), "");
    Phone::current().subscriptions = nullptr;
    EXPECT_EQ(TDUtils::formattedPhoneNumber("0123"), "0123");
    EXPECT_EQ(TDUtils::formattedPhoneNumber(std::nullopt), "");
}

TEST_F(Utilities, AskTheHomeScreenAndReturnItsReply)
{
    const Value reply = Dictionary { { "TDServiceMessageData", Bytes { 1 } } };
    phone.homeScreen->addReply("org.app", reply);
    const Dictionary userInfo { { "TDServiceMessageData", "org.app" } };
    for (const bool ignoreApproach : { true, false }) {
        EXPECT_EQ(VXUtils::sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo(
                      "com.vexil.tandem", "com.vexil.tandem.app.icon", ignoreApproach, userInfo),
            reply);
    }
    EXPECT_EQ(phone.homeScreen->requests.size(), 2U);
    EXPECT_EQ(phone.homeScreen->requests[0],
        (FakeHomeScreen::Request { "com.vexil.tandem", "com.vexil.tandem.app.icon", userInfo }));
}

TEST_F(Utilities, GetNoReplyFromAHomeScreenThatHasNoneOrIsNotThere)
{
    const auto ask = [] {
        return VXUtils::sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo("", "", true, {});
    };
    EXPECT_EQ(ask(), Value());
    Phone::current().homeScreen = nullptr;
    EXPECT_EQ(ask(), Value());
}

} // namespace
