#include "Runtime/NSObject.h"
#include "UIKit/NSIndexPath.h"
#include "UIKit/UIGeometry.h"

#include <gtest/gtest.h>

namespace {

enum class Size { Small = 1, Large = 3 };

/// Takes and gives values of every type that travels through selectors.
class Parcel final : public NSObject {
    NS_CLASS(Parcel, NSObject)
public:
    using Parcels = std::vector<std::shared_ptr<Parcel>>;

    bool initWithWeight(double weight)
    {
        _weight = weight;
        return weight > 0;
    }
    double weight() const { return _weight; }
    Size larger(Size size) { return size == Size::Small ? Size::Large : size; }
    std::optional<std::string> label() const { return _label; }
    void setLabel(std::optional<std::string> label) { _label = std::move(label); }
    const std::optional<Dictionary>& content() const { return _content; }
    void setContent(std::optional<Dictionary> content) { _content = std::move(content); }
    std::size_t countOf(const Dictionary& entries) { return entries.size(); }
    Parcels& withoutFirst(Parcels& parcels)
    {
        if (!parcels.empty())
            parcels.erase(parcels.begin());
        return parcels;
    }
    Parcel& heavierThan(Parcel& other) { return other._weight > _weight ? other : *this; }
    CGRect packed_around(CGSize inner, CGRect outer) { return { outer.x, outer.y, inner.width, inner.height }; }
    std::size_t placeOf(NSIndexPath path) { return path.section * 10 + path.row; }
    void send_to_by(const std::string& what, const std::string& where, const std::string& how)
    {
        _label = what + " to " + where + " by " + how + ".";
    }
    static std::string sum_of(std::string_view name, long count) { return std::string(name) + std::to_string(count); }

private:
    double _weight = 0;
    std::optional<std::string> _label;
    std::optional<Dictionary> _content;
};

NS_IMPLEMENTATION(Parcel, NS_INITIALIZER(initWithWeight), NS_METHOD(weight), NS_METHOD(larger), NS_METHOD(label),
    NS_METHOD(setLabel), NS_METHOD(content), NS_METHOD(setContent), NS_METHOD(countOf), NS_METHOD(withoutFirst),
    NS_METHOD(heavierThan), NS_METHOD(packed_around), NS_METHOD(placeOf), NS_METHOD(send_to_by), NS_METHOD(sum_of))

class Boxing : public ::testing::Test {
protected:
    Value perform(std::string_view selector, const Value& first = {}, const Value& second = {})
    {
        return parcel->performSelector(selector, first, second);
    }

    const std::shared_ptr<Parcel> parcel = std::make_shared<Parcel>();
};

TEST_F(Boxing, AnInitialiserGivesTheObjectOrNull)
{
    EXPECT_EQ(perform("initWithWeight:", 2.5).object(), parcel);
    EXPECT_EQ(perform("weight"), Value(2.5));
    EXPECT_EQ(perform("initWithWeight:", -1), Value());
    EXPECT_EQ(perform("initWithWeight:"), Value());
}

TEST_F(Boxing, EnumerationsTravelAsTheirNumbers)
{
    EXPECT_EQ(perform("larger:", 1), Value(3));
    EXPECT_EQ(perform("larger:", 3), Value(3));
}

TEST_F(Boxing, WhatMayBeAbsentTravelsAsNull)
{
    EXPECT_EQ(perform("label"), Value());
    perform("setLabel:", "Books");
    EXPECT_EQ(perform("label"), Value("Books"));
    for (const Value& none : { Value(), Value(5), Value(Array { "Books" }) }) {
        perform("setLabel:", "Books");
        perform("setLabel:", none);
        EXPECT_EQ(perform("label"), Value());
    }
}

TEST_F(Boxing, DictionariesTravelWhole)
{
    const Dictionary books { { "Books", 3 } };
    EXPECT_EQ(perform("content"), Value());
    perform("setContent:", books);
    EXPECT_EQ(perform("content"), Value(books));
    perform("setContent:", "Books");
    EXPECT_EQ(perform("content"), Value());
    EXPECT_EQ(perform("countOf:", books), Value(1));
    EXPECT_EQ(perform("countOf:"), Value(0));
}

TEST_F(Boxing, ListsOfObjectsTravelAsArraysOfThoseObjects)
{
    const auto other = std::make_shared<Parcel>();
    EXPECT_EQ(perform("withoutFirst:", Array { parcel, other, parcel }), Value(Array { other, parcel }));
    EXPECT_EQ(perform("withoutFirst:", Array { parcel, 5, Value(), other }), Value(Array { other }));
    EXPECT_EQ(perform("withoutFirst:", "parcels"), Value(Array {}));
    EXPECT_EQ(perform("withoutFirst:"), Value(Array {}));
}

TEST_F(Boxing, AMethodThatNeedsAnObjectIsNotCalledWithoutIt)
{
    const auto heavy = std::make_shared<Parcel>();
    heavy->initWithWeight(9);
    EXPECT_EQ(perform("heavierThan:", heavy).object(), heavy);
    EXPECT_EQ(heavy->performSelector("heavierThan:", parcel).object(), heavy);
    for (const Value& none : { Value(), Value("heavy"), Value(Array { heavy }) })
        EXPECT_EQ(perform("heavierThan:", none), Value());
}

TEST_F(Boxing, GeometryAndPathsTravelAsLists)
{
    EXPECT_EQ(perform("packed:around:", Array { 3, 4.5 }, Array { 1, 2, 9, 9 }), Value(Array { 1.0, 2.0, 3.0, 4.5 }));
    EXPECT_EQ(perform("packed:around:", Array { 3 }, "outer"), Value(Array { 0.0, 0.0, 3.0, 0.0 }));
    EXPECT_EQ(perform("placeOf:", Array { 2, 3 }), Value(23));
    EXPECT_EQ(perform("placeOf:", Array { "2", Value(), 3 }), Value(0));
    EXPECT_EQ(perform("placeOf:", 7), Value(0));
}

TEST_F(Boxing, ArgumentsAfterTheSecondArriveEmpty)
{
    perform("send:to:by:", "Books", "Rome");
    EXPECT_EQ(perform("label"), Value("Books to Rome by ."));
}

TEST_F(Boxing, AFunctionOfTheClassIsAnsweredByItsObjects)
{
    EXPECT_EQ(perform("sum:of:", "parcels ", 3), Value("parcels 3"));
    EXPECT_EQ(perform("sum:of:"), Value("0"));
}

} // namespace
