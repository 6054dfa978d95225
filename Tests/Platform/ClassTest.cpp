#include "Runtime/NSObject.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// Remembers what it was asked to do.
class Animal : public NSObject {
    NS_CLASS(Animal, NSObject)
public:
    std::string lastCall;

    virtual std::string sound() const { return "none"; }
    void rest() { lastCall = "rest"; }
    void feed(const std::string& food) { lastCall = "feed " + food; }
    void move_to(long from, long to) { lastCall = "move " + std::to_string(from) + " " + std::to_string(to); }
    void setTame(bool tame) { lastCall = tame ? "tame" : "wild"; }
    void meet(const std::shared_ptr<Animal>& other) { lastCall = other ? "meet " + other->sound() : "meet nobody"; }
    void become(const Class* cls) { lastCall = cls ? "become " + cls->name() : "become nothing"; }
    Value echo(const Value& value) { return value; }
    std::shared_ptr<Animal> child() { return nullptr; }
    void vx__find_name(const Value& among, const std::string& name)
    {
        lastCall = "find " + name + (among.isNull() ? " in nothing" : "");
    }
};

class Dog final : public Animal {
    NS_CLASS(Dog, Animal)
public:
    std::string sound() const override { return "bark"; }
    void fetch() { lastCall = "fetch"; }
    std::string description() const override { return "a dog"; }
};

/// No instance of it can be made.
class Shape : public NSObject {
    NS_CLASS(Shape, NSObject)
public:
    virtual double area() const = 0;
};

/// An instance of it cannot be made without telling its side.
class Square final : public Shape {
    NS_CLASS(Square, Shape)
public:
    explicit Square(double side)
        : _side(side)
    {
    }
    double area() const override { return _side * _side; }

private:
    double _side;
};

NS_IMPLEMENTATION(Animal, NS_METHOD(sound), NS_METHOD(rest), NS_METHOD(feed), NS_METHOD(move_to), NS_METHOD(setTame),
    NS_METHOD(meet), NS_METHOD(become), NS_METHOD(echo), NS_METHOD(child), NS_METHOD(vx__find_name))
NS_IMPLEMENTATION(Dog, NS_METHOD(fetch))
NS_IMPLEMENTATION(Shape, NS_METHOD(area))
NS_IMPLEMENTATION(Square)

TEST(Classes, AreFoundByTheirExactNames)
{
    EXPECT_EQ(NSClassFromString("Dog"), &Dog::classObject());
    EXPECT_EQ(NSClassFromString("NSObject"), &NSObject::classObject());
    for (const char* name : { "", "dog", "Dog ", "Dogs", "NSObject\n", "Cat" })
        EXPECT_EQ(NSClassFromString(name), nullptr) << name;
    EXPECT_EQ(NSClassFromString(std::string_view("Dog\0", 4)), nullptr);
}

TEST(Classes, KnowTheirChainOfSuperclasses)
{
    std::vector<std::string> chain;
    for (const Class* cls = &Dog::classObject(); cls; cls = cls->superclass())
        chain.push_back(cls->name());
    EXPECT_EQ(chain, (std::vector<std::string> { "Dog", "Animal", "NSObject" }));
}

TEST(Classes, AreSubclassesOfThemselvesAndOfThoseAboveButNotOfThoseBelowOrBeside)
{
    EXPECT_TRUE(Dog::classObject().isSubclassOf(Dog::classObject()));
    EXPECT_TRUE(Dog::classObject().isSubclassOf(NSObject::classObject()));
    EXPECT_FALSE(Animal::classObject().isSubclassOf(Dog::classObject()));
    EXPECT_FALSE(Dog::classObject().isSubclassOf(Shape::classObject()));
}

TEST(Classes, ASecondClassOfATakenNameDoesNotReplaceTheFirst)
{
    const auto same = [](NSObject&, const Value&, const Value&) { return Value("impostor"); };
    const Class impostor("Dog", nullptr, nullptr, { { "sound", same } });
    EXPECT_EQ(NSClassFromString("Dog"), &Dog::classObject());
    EXPECT_FALSE(impostor.isSubclassOf(Dog::classObject()));
    EXPECT_EQ(std::make_shared<Dog>()->performSelector("sound"), Value("bark"));
}

TEST(Classes, MakeInstancesUnlessAbstractOrInNeedOfArguments)
{
    EXPECT_TRUE(Dog::classObject().allocAs<Dog>());
    EXPECT_TRUE(NSClassFromString("Dog")->allocAs<Animal>());
    EXPECT_FALSE(Dog::classObject().allocAs<Shape>());
    EXPECT_FALSE(Shape::classObject().alloc());
    EXPECT_FALSE(Square::classObject().alloc());
    EXPECT_FALSE(NSObject::classObject().alloc());
}

TEST(Objects, AreKindOfEveryClassAboveTheirOwnAndMemberOfTheirOwnAlone)
{
    const std::shared_ptr<NSObject> dog = std::make_shared<Dog>();
    EXPECT_TRUE(dog->isKindOfClass(&Dog::classObject()));
    EXPECT_TRUE(dog->isKindOfClass(&Animal::classObject()));
    EXPECT_TRUE(dog->isKindOfClass(&NSObject::classObject()));
    EXPECT_FALSE(dog->isKindOfClass(&Shape::classObject()));
    EXPECT_FALSE(std::make_shared<Animal>()->isKindOfClass(&Dog::classObject()));
    EXPECT_TRUE(dog->isMemberOfClass(&Dog::classObject()));
    EXPECT_FALSE(dog->isMemberOfClass(&Animal::classObject()));
}

TEST(Objects, AreOfNoClassThatDoesNotExist)
{
    const Dog dog;
    EXPECT_FALSE(dog.isKindOfClass(NSClassFromString("Cat")));
    EXPECT_FALSE(dog.isMemberOfClass(NSClassFromString("Cat")));
}

TEST(Objects, DescribeThemselvesByTheirClassUnlessTheySayOtherwise)
{
    EXPECT_EQ(Animal().description(), "<Animal>");
    EXPECT_EQ(Dog().description(), "a dog");
}

struct NamedSelector {
    const char* name;
    std::size_t arguments;
    const char* selector;
};

TEST(Selectors, AreTheNameWithAColonForEachArgument)
{
    const NamedSelector cases[] = {
        { "specifiers", 0, "specifiers" },
        { "readPreferenceValue", 1, "readPreferenceValue:" },
        { "updateSettingsDict_forKey", 2, "updateSettingsDict:forKey:" },
        { "tableView_cellForRowAtIndexPath", 2, "tableView:cellForRowAtIndexPath:" },
        { "insertSpecifier_atIndex_animated", 3, "insertSpecifier:atIndex:animated:" },
        { "sendMessageToSpringBoardAndReceiveReplyName_message_ignoreApproach_userInfo", 4,
            "sendMessageToSpringBoardAndReceiveReplyName:message:ignoreApproach:userInfo:" },
        { "vx__indexByIdentifier_identifier", 2, "vx__indexByIdentifier:identifier:" },
        { "vx__share", 1, "vx__share:" },
        { "vx__share", 0, "vx__share" },
        { "_private", 0, "_private" },
        { "_private", 1, "_private:" },
        { "with_underscore", 1, "with_underscore:" },
    };
    for (const NamedSelector& one : cases)
        EXPECT_EQ(selectorFromName(one.name, one.arguments), one.selector);
}

TEST(Selectors, OfNamesWithTooFewUnderscoresHaveAsManyColonsAsThereAre)
{
    EXPECT_EQ(selectorFromName("", 0), "");
    EXPECT_EQ(selectorFromName("", 2), ":");
    EXPECT_EQ(selectorFromName("plain", 3), "plain:");
    EXPECT_EQ(selectorFromName("_", 2), "_:");
}

TEST(RespondsToSelector, FindsOwnAndInheritedMethodsByTheirExactSelector)
{
    const Dog dog;
    for (const char* selector : { "fetch", "rest", "feed:", "move:to:", "vx__find:name:" })
        EXPECT_TRUE(dog.respondsToSelector(selector)) << selector;
    for (const char* selector :
        { "", ":", "feed", "feed::", "rest:", "move:to", "move_to", "fly", "Fetch", "description" })
        EXPECT_FALSE(dog.respondsToSelector(selector)) << selector;
    EXPECT_FALSE(Animal().respondsToSelector("fetch"));
}

TEST(RespondsToSelector, HoldsForTheInstancesOfAnAbstractClass)
{
    EXPECT_TRUE(Shape::classObject().instancesRespondToSelector("area"));
    EXPECT_FALSE(Shape::classObject().instancesRespondToSelector("sound"));
}

class Performing : public ::testing::Test {
protected:
    /// The call that the object remembers after performing.
    std::string callAfter(std::string_view selector, const Value& first = {}, const Value& second = {})
    {
        dog->lastCall.clear();
        dog->performSelector(selector, first, second);
        return dog->lastCall;
    }

    const std::shared_ptr<Dog> dog = std::make_shared<Dog>();
};

TEST_F(Performing, PassesNoOneAndTwoArguments)
{
    EXPECT_EQ(callAfter("rest"), "rest");
    EXPECT_EQ(callAfter("feed:", "bones"), "feed bones");
    EXPECT_EQ(callAfter("move:to:", 3, -4), "move 3 -4");
    EXPECT_EQ(callAfter("vx__find:name:", Array {}, "Rex"), "find Rex");
}

TEST_F(Performing, CallsTheNearestOverride)
{
    const std::shared_ptr<NSObject> animal = dog;
    EXPECT_EQ(animal->performSelector("sound"), Value("bark"));
    EXPECT_EQ(std::make_shared<Animal>()->performSelector("sound"), Value("none"));
    EXPECT_EQ(std::make_shared<Square>(3)->performSelector("area"), Value(9.0));
}

TEST_F(Performing, ReturnsNullWhereThereIsNoResult)
{
    EXPECT_EQ(dog->performSelector("rest"), Value());
    EXPECT_EQ(dog->performSelector("child"), Value());
    EXPECT_EQ(dog->performSelector("echo:"), Value());
}

TEST_F(Performing, AnUnknownSelectorDoesNothingAndGivesNull)
{
    for (const char* selector : { "", "fly", "feed", "feed:feed:", "rest:" }) {
        EXPECT_EQ(dog->performSelector(selector, "bones"), Value()) << selector;
        EXPECT_EQ(dog->lastCall, "") << selector;
    }
}

TEST_F(Performing, ArgumentsTooManyAreIgnored)
{
    EXPECT_EQ(callAfter("rest", 1, 2), "rest");
    EXPECT_EQ(callAfter("feed:", "bones", "more bones"), "feed bones");
}

TEST_F(Performing, MissingArgumentsArriveEmpty)
{
    EXPECT_EQ(callAfter("feed:"), "feed ");
    EXPECT_EQ(callAfter("move:to:", 1), "move 1 0");
    EXPECT_EQ(callAfter("setTame:"), "wild");
    EXPECT_EQ(callAfter("meet:"), "meet nobody");
    EXPECT_EQ(callAfter("become:"), "become nothing");
    EXPECT_EQ(callAfter("vx__find:name:"), "find  in nothing");
}

TEST_F(Performing, ArgumentsOfAnotherTypeArriveAsTheirReadingOrEmpty)
{
    EXPECT_EQ(callAfter("feed:", 5), "feed ");
    EXPECT_EQ(callAfter("feed:", dog), "feed ");
    EXPECT_EQ(callAfter("move:to:", "12 km", 3.9), "move 12 3");
    EXPECT_EQ(callAfter("move:to:", Array { 1 }, true), "move 0 1");
    EXPECT_EQ(callAfter("setTame:", "YES"), "tame");
    EXPECT_EQ(callAfter("setTame:", 0.5), "tame");
    EXPECT_EQ(callAfter("setTame:", dog), "wild");
    EXPECT_EQ(callAfter("meet:", "dog"), "meet nobody");
    EXPECT_EQ(callAfter("meet:", std::make_shared<Square>(1)), "meet nobody");
    EXPECT_EQ(callAfter("meet:", &Dog::classObject()), "meet nobody");
    EXPECT_EQ(callAfter("become:", "Dog"), "become nothing");
    EXPECT_EQ(callAfter("become:", &Dog::classObject()), "become Dog");
}

TEST_F(Performing, ANumberBeyondTheRangeOfIntegersArrivesClamped)
{
    EXPECT_EQ(callAfter("move:to:", 18446744073709551615UL, -1e300), "move 9223372036854775807 -9223372036854775808");
}

TEST_F(Performing, GivesBackTheVeryObjectThatItWasGiven)
{
    EXPECT_EQ(dog->performSelector("echo:", dog).object(), dog);
}

} // namespace
