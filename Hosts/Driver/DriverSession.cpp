#include "Driver/DriverSession.h"

#include "Demo/DemoFile.h"
#include "Driver/PageNames.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSString.h"
#include "UIKit/UIAlertController.h"
#include "libvexil/VXMiscSettingsViewController.h"

#include <stdexcept>

namespace {

constexpr CGSize screenSize { 375, 667 };
constexpr double narrowestCell = 1;
constexpr double widestCell = 10000;
constexpr const char* leaveShareSheetTitle = "Cancel";
constexpr std::size_t largestPicture = std::size_t { 64 } << 20;

/// A request that cannot be done, in one line for whoever sent it.
class RequestError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

const Json& field(const Json& request, const char* name)
{
    static const Json absent;
    const auto found = request.find(name);
    return found == request.end() ? absent : *found;
}

std::string textField(const Json& request, const char* name)
{
    const Json& text = field(request, name);
    if (!text.is_string())
        throw RequestError("\"" + std::string(name) + "\" must be a string");
    return text.get<std::string>();
}

std::string nameOfRow(const PSSpecifier& row, std::size_t index)
{
    return row.identifier() ? *row.identifier() : "row " + std::to_string(index);
}

Json jsonOfRow(PSListController& page, std::size_t index)
{
    const Row row = page.specifierAtIndex(index);
    const auto path = page.indexPathForIndex(index);
    const auto property = [&](const char* key) { return jsonOf(row->propertyForKey(key)); };
    Json json { { "index", index } };
    json["section"] = page.sectionForIndex(index);
    json["row"] = path ? Json(path->row) : Json();
    json["identifier"] = jsonOf(row->identifier());
    json["name"] = jsonOf(row->name());
    json["cell"] = nameOfCellType(row->cellType());
    json["cellClass"] = property(PSProperty::cellClass);
    json["detail"] = row->detailControllerClass() ? Json(row->detailControllerClass()->name()) : Json();
    json["key"] = property(PSProperty::key);
    json["value"] = row->isGroup() ? Json() : jsonOf(row->performGetter());
    json["enabled"] = row->isEnabled();
    json["icon"] = row->propertyForKey(PSProperty::iconImage).as<UIImage>() != nullptr;
    json["footer"] = row->isGroup() ? jsonOf(page.footerOfGroup(row)) : property(PSProperty::footerText);
    json["notification"] = jsonOf(row->notificationName());
    return json;
}

/// Moves the control as a user would, and lets it go.
void moveControl(UIControl& control, const Json& value, const std::string& rowName)
{
    if (auto* toggle = dynamic_cast<UISwitch*>(&control)) {
        if (!value.is_boolean() && !value.is_number())
            throw RequestError(rowName + " is a switch: its value is true or false");
        toggle->setOn_animated(value.is_boolean() ? value.get<bool>() : value.get<double>() != 0, true);
        toggle->sendActionsForControlEvents(UIControlEventValueChanged);
        return;
    }
    auto* slider = dynamic_cast<UISlider*>(&control);
    if (!slider)
        throw RequestError(rowName + " has a control that cannot be moved");
    if (!value.is_number())
        throw RequestError(rowName + " is a slider: its value is a number");
    slider->drag(value.get<float>());
    slider->release();
}

} // namespace

Result<std::unique_ptr<DriverSession>> DriverSession::open(const HostOptions& options)
{
    std::unique_ptr<DriverSession> session(new DriverSession);
    EventLog& events = *session->_events;
    auto host = HostSession::open(options, [&](Phone& phone) { events.decorate(phone); });
    if (!host)
        return host.failure();
    session->_host = std::move(*host);
    events.observeProcess();
    if (const auto opened = session->_host->openRootPage(session->_events, screenSize); !opened)
        return opened.failure();
    if (const auto& notice = session->_host->notice())
        events.add({ { "event", "error" }, { "message", *notice } });
    return session;
}

Json DriverSession::handleLine(const std::string& line)
{
    // The parser takes a zero byte for the end of the text.
    const bool isText = line.find('\0') == std::string::npos;
    const Json request = isText ? Json::parse(line, nullptr, false) : Json();
    if (!request.is_object())
        return { { "ok", false }, { "error", "not a request: a JSON object with \"do\" on one line" },
            { "events", _events->take() } };
    return handle(request);
}

Json DriverSession::handle(const Json& request)
{
    return replyTo([&] { return perform(request); });
}

Json DriverSession::rowsWithCells()
{
    return replyTo([this] {
        Json page = rows();
        page["cells"] = cells(page["rows"].size());
        return page;
    });
}

bool DriverSession::hasRow(const std::string& identifier)
{
    return VXMiscSettingsViewController::vx__indexByIdentifier_identifier(page()->specifiers(), identifier) >= 0;
}

Json DriverSession::replyTo(const std::function<Json()>& act)
{
    Json reply { { "ok", true } };
    try {
        Json result;
        const auto done = _host->turn([&] {
            // One of what has failed since the last request.
            acknowledgeAlert();
            showCompanions();
            result = act();
        });
        if (!done)
            throw RequestError(done.failure().text);
        if (result.is_object())
            reply.update(result);
    } catch (const std::exception& error) {
        reply = { { "ok", false }, { "error", error.what() } };
    }
    acknowledgeAlert();
    reply["events"] = _events->take();
    return reply;
}

Json DriverSession::perform(const Json& request)
{
    static const std::map<std::string, Action, std::less<>> actions {
        { "rows", [](DriverSession& session, const Json&) { return session.rows(); } },
        { "cell", &DriverSession::cell },
        { "set", &DriverSession::set },
        { "tap", &DriverSession::tap },
        { "open", &DriverSession::openPage },
        { "back", [](DriverSession& session, const Json&) { return session.back(); } },
        { "choose", &DriverSession::choose },
        { "pick", &DriverSession::pick },
        { "post", &DriverSession::post },
        { "appearance", &DriverSession::appearance },
        { "hook", &DriverSession::hook },
    };
    const std::string name = textField(request, "do");
    const auto action = actions.find(name);
    if (action == actions.end())
        throw RequestError("no request is named \"" + name + "\"");
    return action->second(*this, request);
}

void DriverSession::showCompanions()
{
    // The rows under a sheet stay as the user saw them, until the sheet is gone.
    if (!top()->presentedViewController())
        _host->showCompanions();
}

std::shared_ptr<UIViewController> DriverSession::top()
{
    return _host->navigation().topViewController();
}

std::shared_ptr<PSListController> DriverSession::page()
{
    auto list = std::dynamic_pointer_cast<PSListController>(top());
    if (!list)
        throw RequestError(top()->isa().name() + " is no page of rows; go back first");
    return list;
}

std::shared_ptr<PSListController> DriverSession::uncoveredPage()
{
    auto list = page();
    if (list->presentedViewController())
        throw RequestError("the page is covered; choose or pick first");
    return list;
}

std::size_t DriverSession::indexOfRow(PSListController& page, const Json& request)
{
    const Json& row = field(request, "row");
    const Rows& rows = page.specifiers();
    if (row.is_number_integer()) {
        if (row.get<long>() < 0 || row.get<std::size_t>() >= rows.size())
            throw RequestError("no row " + row.dump() + ": the page has " + std::to_string(rows.size()));
        return row.get<std::size_t>();
    }
    if (!row.is_string())
        throw RequestError("\"row\" must be an identifier or an index");
    const auto identifier = row.get<std::string>();
    const long index = VXMiscSettingsViewController::vx__indexByIdentifier_identifier(rows, identifier);
    if (index < 0)
        throw RequestError("no row \"" + identifier + "\" on this page");
    return static_cast<std::size_t>(index);
}

NSIndexPath DriverSession::pathOfRow(PSListController& page, const Json& request)
{
    const std::size_t index = indexOfRow(page, request);
    const auto path = page.indexPathForIndex(index);
    if (!path)
        throw RequestError(nameOfRow(*page.specifierAtIndex(index), index) + " is a group");
    return *path;
}

Json DriverSession::rows()
{
    const auto list = page();
    const auto product = std::dynamic_pointer_cast<VXMiscSettingsViewController>(list);
    Json json { { "page", list->isa().name() }, { "title", list->title() } };
    json["barColor"] =
        product && product->hasCustomNavigationBarColor() ? jsonOf(product->customNavigationBarColor()) : Json();
    json["rows"] = Json::array();
    for (std::size_t i = 0; i < list->specifiers().size(); ++i)
        json["rows"].push_back(jsonOfRow(*list, i));
    return json;
}

Json DriverSession::cell(const Json& request)
{
    const auto list = page();
    const NSIndexPath path = pathOfRow(*list, request);
    const Json& width = field(request, "width");
    if (!width.is_null()
        && (!width.is_number() || !(width.get<double>() >= narrowestCell) || width.get<double>() > widestCell))
        throw RequestError("\"width\" must be a number of points from 1 to 10000");
    const auto cell = std::dynamic_pointer_cast<PSTableCell>(list->table().loadCellForRowAtIndexPath(path));
    if (!cell)
        throw RequestError("the row has no cell");
    const double points = width.is_null() ? screenSize.width : width.get<double>();
    cell->setFrame({ 0, 0, points, cell->preferredHeightForWidth(points) });
    cell->layoutIfNeeded();
    return { { "cell", jsonOfCell(cell) } };
}

Json DriverSession::cells(std::size_t count)
{
    Json all = Json::array();
    for (std::size_t i = 0; i < count; ++i) {
        // A row that cannot be shown leaves the others to be shown.
        try {
            all.push_back(cell({ { "row", i } })["cell"]);
        } catch (const std::exception&) {
            all.push_back(nullptr);
        }
    }
    return all;
}

Json DriverSession::set(const Json& request)
{
    const auto list = uncoveredPage();
    const NSIndexPath path = pathOfRow(*list, request);
    const std::size_t index = list->indexForRow_inGroup(path.row, path.section);
    const std::string name = nameOfRow(*list->specifierAtIndex(index), index);
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(list->table().loadCellForRowAtIndexPath(path));
    if (!cell || !cell->control())
        throw RequestError(name + " has no control");
    if (!cell->isUserInteractionEnabled() || !cell->control()->isEnabled())
        throw RequestError(name + " is disabled");
    moveControl(*cell->control(), field(request, "value"), name);
    return {};
}

Json DriverSession::tap(const Json& request)
{
    const auto list = uncoveredPage();
    tapRow(*list, pathOfRow(*list, request));
    return {};
}

void DriverSession::tapRow(PSListController& page, NSIndexPath path)
{
    UITableView& table = page.table();
    const auto cell = table.loadCellForRowAtIndexPath(path);
    if (!cell || !cell->isUserInteractionEnabled() || !page.tableView_shouldHighlightRowAtIndexPath(table, path))
        throw RequestError("the row cannot be tapped");
    table.selectRowAtIndexPath(path);
    page.tableView_didSelectRowAtIndexPath(table, path);
}

Json DriverSession::openPage(const Json& request)
{
    const std::string name = textField(request, "page");
    const PageName* wanted = pageNamed(name);
    if (!wanted)
        throw RequestError("no page is named \"" + name + "\": root, calls, messages, bluetooth, sims or misc");
    const auto list = uncoveredPage();
    if (list != _host->rootPage())
        throw RequestError("pages are opened from the root page; go back first");
    if (wanted->className == list->isa().name())
        return {};
    const Rows& rows = list->specifiers();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Class* detail = rows[i]->detailControllerClass();
        if (detail && detail->name() == wanted->className) {
            tapRow(*list, *list->indexPathForIndex(i));
            return {};
        }
    }
    throw RequestError("the root page has no entry for \"" + name + "\" now");
}

Json DriverSession::back()
{
    if (top()->presentedViewController())
        throw RequestError("the page is covered; choose or pick first");
    if (!_host->navigation().popViewControllerAnimated(true))
        throw RequestError("this is the first page");
    return {};
}

Json DriverSession::choose(const Json& request)
{
    const std::string title = textField(request, "title");
    const auto presented = top()->presentedViewController();
    // The share sheet has no actions of ours; the user can leave it.
    if (std::dynamic_pointer_cast<UIActivityViewController>(presented) && title == leaveShareSheetTitle) {
        presented->dismissViewControllerAnimated_completion(true, nullptr);
        return {};
    }
    const auto sheet = std::dynamic_pointer_cast<UIAlertController>(presented);
    if (!sheet)
        throw RequestError("no sheet is up");
    for (std::size_t i = 0; i < sheet->actions().size(); ++i) {
        if (sheet->actions()[i].title == title) {
            sheet->chooseAction(i);
            return {};
        }
    }
    throw RequestError("the sheet has no action \"" + title + "\"");
}

Json DriverSession::pick(const Json& request)
{
    const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(top()->presentedViewController());
    if (!picker)
        throw RequestError("no picker is up");
    const Json& image = field(request, "image");
    if (image.is_null()) {
        picker->cancel();
        return {};
    }
    const std::string file = textField(request, "image");
    auto content = contentOfFile(file, largestPicture);
    if (!content)
        throw RequestError(file + ": " + content.failure().text);
    const auto picked = UIImage::imageWithData(std::move(*content));
    if (!picked || !picked->bitmap())
        throw RequestError(file + " is no picture, or too large to be used");
    picker->finishPickingImage(picked);
    return {};
}

Json DriverSession::post(const Json& request)
{
    NSNotificationCenter::defaultCenter().postNotificationName(textField(request, "name"));
    return {};
}

Json DriverSession::appearance(const Json& request)
{
    const Json& dark = field(request, "dark");
    if (!dark.is_boolean())
        throw RequestError("\"dark\" must be true or false");
    if (!_host->setDarkAppearance(dark.get<bool>()))
        throw RequestError("this phone has no appearance to change");
    return {};
}

Json DriverSession::hook(const Json& request)
{
    const std::string selector = textField(request, "name");
    const auto controller = top();
    if (!controller->respondsToSelector(selector))
        throw RequestError(controller->isa().name() + " does not respond to " + selector);
    const auto value = valueOf(field(request, "value"));
    if (!value)
        throw RequestError("\"value\" is nested too deep");
    return { { "result", jsonOf(controller->performSelector(selector, *value)) } };
}

void DriverSession::acknowledgeAlert()
{
    const auto alertOnTop = [this] {
        const auto alert = std::dynamic_pointer_cast<UIAlertController>(top()->topmostViewController());
        return alert && alert->preferredStyle() == UIAlertControllerStyle::Alert ? alert : nullptr;
    };
    while (const auto alert = alertOnTop())
        alert->presentingViewController()->dismissViewControllerAnimated_completion(false, nullptr);
}
