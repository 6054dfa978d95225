#pragma once

#include "TDSettingsPage.h"
#include "TDSubtitleCell.h"
#include "UIKit/UIAlertController.h"

/// The cell of the page's button rows: an image of a fixed size in the corner.
class TDSIMMaskTableCell : public TDSubtitleCell {
    NS_CLASS(TDSIMMaskTableCell, TDSubtitleCell)
public:
    // PSTableCell
    void layoutSubviews() override;
};

/// The SIM page: each SIM with its logo, carrier and number, and a button that changes or resets the logo. It writes
/// logo files and nothing else.
class TDSimSettingsController : public TDSettingsPage, public UIImagePickerControllerDelegate {
    NS_CLASS(TDSimSettingsController, TDSettingsPage)
public:
    /// The rows, made anew from the SIMs as they are now; none without SIMs.
    Rows simSettingsSpecifiers();
    /// The action of a "Carrier Logo" button. Without a SIM the sheet speaks of "this carrier".
    void changeCarrierLogo(const Row& row);
    /// The action of the "Reset All Logos" button.
    void resetCarrierLogos(const Row& row);
    void showImagePicker();
    /// The key of the SIM whose logo is being changed; absent before the first change and after "Cancel".
    const std::optional<std::string>& currentSubScriptionContext() const { return _currentSubScriptionContext; }
    void setCurrentSubScriptionContext(std::optional<std::string> simKey)
    {
        _currentSubScriptionContext = std::move(simKey);
    }

    // PSListController
    const Rows& specifiers() override;
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(UITableView& table, NSIndexPath path) override;

    // UIImagePickerControllerDelegate
    void imagePickerController_didFinishPickingMediaWithInfo(
        const std::shared_ptr<UIImagePickerController>& picker, const Dictionary& info) override;

private:
    void customiseSimCell(UITableViewCell& cell, const PSSpecifier& row);
    void customiseMaskCell(UITableViewCell& cell, const PSSpecifier& row);

    std::optional<std::string> _currentSubScriptionContext;
};
