#include "Support/TestPhone.h"
#include "libvexil/VXControlTableCell.h"

namespace {

/// A cell whose switch is red while it is on.
class RedSwitchCell final : public VXControlTableCell {
    NS_CLASS(RedSwitchCell, VXControlTableCell)
public:
    std::optional<UIColor> switchCellOnTintColor() override { return UIColor { 1, 0, 0, 1 }; }
};

NS_IMPLEMENTATION(RedSwitchCell)

class ControlCells : public ::testing::Test {
protected:
    template <class Cell>
    static std::shared_ptr<UISwitch> switchOf(const Row& row)
    {
        auto cell = std::make_shared<Cell>();
        EXPECT_TRUE(cell->initWithSpecifier(row));
        return std::dynamic_pointer_cast<UISwitch>(cell->control());
    }
};

TEST_F(ControlCells, HaveASwitchOfThePlatformsOwnColour)
{
    const auto control = switchOf<VXControlTableCell>(PSSpecifier::emptyGroupSpecifier());
    ASSERT_TRUE(control);
    EXPECT_EQ(control->onTintColor(), std::nullopt);
}

TEST_F(ControlCells, HaveASwitchOfTheSubclassesColour)
{
    for (const Row& row : { PSSpecifier::emptyGroupSpecifier(), Row() }) {
        const auto control = switchOf<RedSwitchCell>(row);
        ASSERT_TRUE(control);
        EXPECT_EQ(control->onTintColor(), (UIColor { 1, 0, 0, 1 }));
    }
}

TEST_F(ControlCells, KeepTheColourWhenTheyAreBroughtUpToDate)
{
    const auto cell = std::make_shared<RedSwitchCell>();
    const Row row = PSSpecifier::emptyGroupSpecifier();
    EXPECT_TRUE(cell->initWithSpecifier(row));
    const auto control = cell->control();
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(cell->control(), control);
    EXPECT_EQ(std::dynamic_pointer_cast<UISwitch>(control)->onTintColor(), (UIColor { 1, 0, 0, 1 }));
}

TEST_F(ControlCells, AreFoundByName)
{
    ASSERT_TRUE(NSClassFromString("VXControlTableCell"));
    EXPECT_TRUE(NSClassFromString("VXControlTableCell")->isSubclassOf(PSSwitchTableCell::classObject()));
}

} // namespace
