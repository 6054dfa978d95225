#include "Support/PageTest.h"

#include "libvexil/VXMiscSettingsViewController.h"

namespace {

NSIndexPath pathOf(PSListController& page, const std::string& identifier)
{
    const long index = VXMiscSettingsViewController::vx__indexByIdentifier_identifier(page.specifiers(), identifier);
    const auto path = index < 0 ? std::nullopt : page.indexPathForIndex(static_cast<std::size_t>(index));
    if (!path)
        throw std::invalid_argument("no row " + identifier);
    return *path;
}

} // namespace

PageTest::PageTest()
{
    navigation->setObserver(screen);
}

std::shared_ptr<TDRootListController> PageTest::openRoot()
{
    root = std::make_shared<TDRootListController>();
    root->initForContentSize(size);
    root->setSpecifier(PSSpecifier::groupSpecifierWithName("Pairo"));
    navigation->pushViewController_animated(root, false);
    screen->lines.clear();
    return root;
}

std::shared_ptr<PSTableCell> PageTest::cellOf(PSListController& page, const std::string& identifier, double width)
{
    auto cell =
        std::dynamic_pointer_cast<PSTableCell>(page.table().loadCellForRowAtIndexPath(pathOf(page, identifier)));
    if (!cell)
        throw std::invalid_argument("no cell of " + identifier);
    cell->setFrame({ 0, 0, width, cell->preferredHeightForWidth(width) });
    cell->layoutIfNeeded();
    return cell;
}

Row PageTest::rowOf(PSListController& page, const std::string& identifier)
{
    return VXMiscSettingsViewController::vx__specifierByIdentifier_identifier(page.specifiers(), identifier);
}

void PageTest::moveSwitch(PSListController& page, const std::string& identifier, bool on)
{
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(cellOf(page, identifier));
    const auto control = std::dynamic_pointer_cast<UISwitch>(cell->control());
    control->setOn_animated(on, true);
    control->sendActionsForControlEvents(UIControlEventValueChanged);
}

void PageTest::moveSlider(PSListController& page, const std::string& identifier, float value)
{
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(cellOf(page, identifier));
    const auto slider = std::dynamic_pointer_cast<UISlider>(cell->control());
    slider->drag(value);
    slider->release();
}

void PageTest::tap(PSListController& page, const std::string& identifier)
{
    const NSIndexPath path = pathOf(page, identifier);
    page.table().loadCellForRowAtIndexPath(path);
    page.table().selectRowAtIndexPath(path);
    page.tableView_didSelectRowAtIndexPath(page.table(), path);
}
