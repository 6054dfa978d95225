#include "TDSimSettingsController.h"

#include "Foundation/NSString.h"
#include "TDBluetoothDevicesController.h"
#include "TDCarrierLogos.h"
#include "TDPageStyle.h"
#include "libtandem/TDUtils.h"

NS_IMPLEMENTATION(TDSIMMaskTableCell)
NS_IMPLEMENTATION(TDSimSettingsController, NS_METHOD(simSettingsSpecifiers), NS_METHOD(changeCarrierLogo),
    NS_METHOD(resetCarrierLogos), NS_METHOD(showImagePicker),
    NS_METHOD(imagePickerController_didFinishPickingMediaWithInfo), NS_METHOD(currentSubScriptionContext),
    NS_METHOD(setCurrentSubScriptionContext))

namespace {

using Context = std::shared_ptr<CTXPCServiceSubscriptionContext>;

constexpr const char* simPrefix = "SIM";
constexpr const char* maskPrefix = "MASK";
constexpr char keySeparator = '+';
constexpr const char* resetAllIdentifier = "LOGO";
constexpr const char* product = "Pairo";
constexpr const char* cancelTitle = "Cancel";
/// Points: a logo in a SIM row, and the image of a button row.
constexpr CGRect logoRect { 0, 0, 40, 40 };
constexpr double logoCornerRadius = 10;

constexpr const char* changeMessage =
    "Would you like to change the image of '%@' carrier? It will appear in SIM selection window "
    "for both Calls & Messages.";
constexpr const char* changeMessageWithoutLabel =
    "Would you like to change the image of this carrier? It will appear in SIM "
    "selection window for both Calls & Messages.";
constexpr const char* resetAllMessage = "Are you sure you want to reset all carrier logos?";
constexpr const char* removalFailure = "com.vexil.Pairo => Error: While removing item at path '%@' error => %@";

Context simOf(const PSSpecifier& row)
{
    return std::dynamic_pointer_cast<CTXPCServiceSubscriptionContext>(row.userInfo());
}

/// Absent for no SIM.
std::optional<std::string> keyOf(const Context& context)
{
    return context ? std::optional(context->uuid().UUIDString()) : std::nullopt;
}

std::optional<std::string> labelOf(const Context& context)
{
    return context ? context->label() : std::nullopt;
}

std::optional<std::string> numberOf(const Context& context)
{
    return context ? context->phoneNumber() : std::nullopt;
}

void setAction(const Row& row, const std::string& action)
{
    // Older systems know the operation under another name.
    if (row->respondsToSelector("setLegacyAction:"))
        row->performSelector("setLegacyAction:", action);
    else
        row->setButtonAction(action);
}

Row makeRow(std::optional<std::string> title, const std::shared_ptr<NSObject>& target, std::string setter,
    PSCellType type, const Class& cellClass, std::string identifier)
{
    Row row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        std::move(title), target, std::move(setter), "", nullptr, type, nullptr);
    row->setProperty_forKey(&cellClass, PSProperty::cellClass);
    row->setIdentifier(std::move(identifier));
    return row;
}

Row makeButton(const std::string& title, const std::shared_ptr<NSObject>& target, std::string identifier,
    const std::string& action)
{
    Row row = makeRow(title, target, "", PSCellType::Button, TDSIMMaskTableCell::classObject(), std::move(identifier));
    setAction(row, action);
    return row;
}

/// True when it is gone; a failure is logged.
bool removeLogo(const std::optional<std::string>& simKey)
{
    const auto error = removeUserLogo(simKey);
    if (error)
        TDUtils::logMessage(removalFailure, { pathOfUserLogo(simKey), error->localizedDescription() });
    return !error;
}

/// Redraws the view's image at the size of a logo, its proportions not kept.
void drawAsLogo(UIImageView& view)
{
    UIGraphicsBeginImageContextWithOptions({ logoRect.width, logoRect.height }, false, UIScreen::mainScreenScale());
    if (view.image())
        view.image()->drawInRect(logoRect);
    // The context stays open on purpose; the platform closes what is open when the turn ends.
    view.setImage(UIGraphicsGetImageFromCurrentImageContext());
    view.layer().cornerRadius = logoCornerRadius;
    view.setClipsToBounds(true);
}

} // namespace

void TDSIMMaskTableCell::layoutSubviews()
{
    Super::layoutSubviews();
    imageView()->setFrame(logoRect);
}

const Rows& TDSimSettingsController::specifiers()
{
    if (!_specifiers)
        _specifiers = simSettingsSpecifiers();
    return *_specifiers;
}

Rows TDSimSettingsController::simSettingsSpecifiers()
{
    const TDUtils::Contexts contexts = TDUtils::fetchSubscriptions();
    TDUtils::logMessage("**************** subscriptions: %@", { Array(contexts.begin(), contexts.end()) });
    Rows rows;
    long number = 0;
    bool anyLogo = false;
    for (const Context& context : contexts) {
        const std::string simKey = context->uuid().UUIDString();
        rows.push_back(PSSpecifier::groupSpecifierWithName(stringWithFormat(localized("SIM %ld"), { ++number })));
        rows.push_back(makeRow(context->label(), self(), "updateSimSelection:specifier:", PSCellType::Link,
            TDSIMInfoTableCell::classObject(), stringWithFormat("SIM+%@", { simKey })));
        rows.back()->setUserInfo(context);
        rows.push_back(makeButton(
            localized("Carrier Logo"), self(), stringWithFormat("LOGO+%@", { simKey }), "changeCarrierLogo:"));
        rows.back()->setUserInfo(context);
        rows.push_back(PSSpecifier::emptyGroupSpecifier());
        anyLogo = anyLogo || hasDefaultImageSetup(simKey);
    }
    if (anyLogo)
        rows.push_back(makeButton(localized("Reset All Logos"), self(), resetAllIdentifier, "resetCarrierLogos:"));
    return rows;
}

std::shared_ptr<UITableViewCell> TDSimSettingsController::tableView_cellForRowAtIndexPath(
    UITableView& table, NSIndexPath path)
{
    const auto cell = Super::tableView_cellForRowAtIndexPath(table, path);
    if (!cell)
        return cell;
    const Row row = rowAt(path);
    cell->textLabel()->setTextColor(accentOrWhite());
    const std::string identifier = row->identifier().value_or(std::string());
    if (identifier.starts_with(simPrefix)) {
        customiseSimCell(*cell, *row);
    } else if (identifier.starts_with(maskPrefix)) {
        customiseMaskCell(*cell, *row);
    } else {
        cell->setSelectionStyle(UITableViewCellSelectionStyle::Default);
        cell->setUserInteractionEnabled(true);
    }
    return cell;
}

void TDSimSettingsController::customiseSimCell(UITableViewCell& cell, const PSSpecifier& row)
{
    const Context context = simOf(row);
    const std::string simKey = componentsSeparatedByString(*row.identifier(), keySeparator).back();
    const auto carrier = TDUtils::carrierBundleController()->localizedCarrierNameForSubscriptionContext(context);
    std::string detail = TDUtils::formattedPhoneNumber(numberOf(context));
    if (carrier) {
        cell.imageView()->setImage(getImage(*carrier, simKey));
        drawAsLogo(*cell.imageView());
        detail = stringWithFormat("%@ - %@", { *carrier, detail });
    }
    if (cell.detailTextLabel()) {
        cell.detailTextLabel()->setTextColor(accentOrWhite());
        cell.detailTextLabel()->setText(detail);
    }
    cell.setAccessoryType(UITableViewCellAccessoryType::None);
    cell.setAccessoryView(nullptr);
    cell.setSelectionStyle(UITableViewCellSelectionStyle::None);
    cell.setUserInteractionEnabled(false);
}

void TDSimSettingsController::customiseMaskCell(UITableViewCell& cell, const PSSpecifier& row)
{
    const auto toggle = std::make_shared<UISwitch>();
    toggle->setFrame({});
    toggle->setOn_animated(false, false);
    toggle->addTarget_action_forControlEvents(self(), "switchChanged:", UIControlEventValueChanged);
    cell.setAccessoryView(toggle);
    if (cell.detailTextLabel()) {
        cell.detailTextLabel()->setText(TDUtils::formattedPhoneNumber(numberOf(simOf(row))));
        cell.detailTextLabel()->setTextColor(UIColor::lightGrayColor());
    }
    cell.setUserInteractionEnabled(true);
}

void TDSimSettingsController::changeCarrierLogo(const Row& row)
{
    const Context context = row ? simOf(*row) : nullptr;
    const auto label = labelOf(context);
    const std::string message =
        label ? stringWithFormat(localized(changeMessage), { *label }) : localized(changeMessageWithoutLabel);
    const auto sheet = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        localized(product), message, UIAlertControllerStyle::ActionSheet);
    const std::weak_ptr<TDSimSettingsController> weakPage = self();

    sheet->addAction({ localized("Change"), UIAlertActionStyle::Destructive, [weakPage, context] {
                          if (const auto page = weakPage.lock()) {
                              page->setCurrentSubScriptionContext(keyOf(context));
                              page->showImagePicker();
                          }
                      } });
    if (hasDefaultImageSetup(keyOf(context))) {
        sheet->addAction({ localized("Reset"), UIAlertActionStyle::Destructive, [weakPage, context] {
                              const bool removed = removeLogo(keyOf(context));
                              if (const auto page = removed ? weakPage.lock() : nullptr)
                                  page->reloadSpecifiers();
                          } });
    }
    sheet->addAction({ cancelTitle, UIAlertActionStyle::Cancel, [weakPage] {
                          if (const auto page = weakPage.lock())
                              page->setCurrentSubScriptionContext(std::nullopt);
                      } });
    presentViewController_animated_completion(sheet, true, nullptr);
}

void TDSimSettingsController::resetCarrierLogos(const Row& /*row*/)
{
    const auto sheet = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        localized(product), localized(resetAllMessage), UIAlertControllerStyle::ActionSheet);
    const std::weak_ptr<TDSimSettingsController> weakPage = self();
    sheet->addAction({ localized("Reset All"), UIAlertActionStyle::Destructive, [weakPage] {
                          for (const Context& context : TDUtils::fetchSubscriptions())
                              removeLogo(keyOf(context));
                          if (const auto page = weakPage.lock())
                              page->reloadSpecifiers();
                      } });
    sheet->addAction({ cancelTitle, UIAlertActionStyle::Cancel, nullptr });
    presentViewController_animated_completion(sheet, true, nullptr);
}

void TDSimSettingsController::showImagePicker()
{
    const auto picker = std::make_shared<UIImagePickerController>();
    picker->setDelegate(self());
    picker->setAllowsEditing(true);
    picker->setSourceType(UIImagePickerControllerSourceType::PhotoLibrary);
    presentViewController_animated_completion(picker, true, nullptr);
}

void TDSimSettingsController::imagePickerController_didFinishPickingMediaWithInfo(
    const std::shared_ptr<UIImagePickerController>& picker, const Dictionary& info)
{
    if (const auto image = valueForKey(info, UIImagePickerControllerEditedImage).as<UIImage>()) {
        saveImage(_currentSubScriptionContext, image);
        reloadSpecifiers();
    }
    if (picker)
        picker->dismissViewControllerAnimated_completion(true, nullptr);
}
