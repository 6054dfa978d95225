#pragma once

#include "PreferencesUI/PSSpecifier.h"
#include "UIKit/UITableViewCell.h"

/// The cell of a row. Made by the list page: allocated by class, then initialised with the row.
class PSTableCell : public UITableViewCell {
    NS_CLASS(PSTableCell, UITableViewCell)
public:
    /// Called once, first of all; subclasses call their base and then set themselves up. False when no cell could be
    /// made.
    virtual bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row);
    /// The former with the style that the class prefers and no reuse identifier.
    virtual bool initWithSpecifier(const Row& row);

    const Row& specifier() const { return _specifier; }
    std::optional<std::string> title() const { return textLabel()->text(); }
    void setTitle(std::optional<std::string> title) { textLabel()->setText(std::move(title)); }

    /// Brings the cell up to what the row says now: title, icon, value, whether it can be worked.
    virtual void refreshCellContentsWithSpecifier(const Row& row);
    /// The height of the row in a table of that width, in points.
    virtual double preferredHeightForWidth(double width);

private:
    Row _specifier;
};

/// A cell with a control, whose value it writes through the row.
class PSControlTableCell : public PSTableCell {
    NS_CLASS(PSControlTableCell, PSTableCell)
public:
    const std::shared_ptr<UIControl>& control() const { return _control; }
    /// Takes the place of the control that was there; null takes it away.
    virtual void setControl(std::shared_ptr<UIControl> control);
    /// What a row stores for the control as it stands now.
    virtual Value controlValue() const { return {}; }
    /// The action of the control: writes its value through the row's setter.
    void controlChanged(const std::shared_ptr<UIControl>& sender);

    void refreshCellContentsWithSpecifier(const Row& row) override;

private:
    std::shared_ptr<UIControl> _control;
};

/// A row with a switch at its end.
class PSSwitchTableCell : public PSControlTableCell {
    NS_CLASS(PSSwitchTableCell, PSControlTableCell)
public:
    Value controlValue() const override;

    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    void refreshCellContentsWithSpecifier(const Row& row) override;

protected:
    std::shared_ptr<UISwitch> switchControl() const;
};

/// A slider that may stop at steps and may show its value behind the track.
class PSSegmentableSlider : public UISlider {
    NS_CLASS(PSSegmentableSlider, UISlider)
public:
    /// The number of steps between the ends; 0 for a slider without steps.
    long segmentCount() const { return _segmentCount; }
    void setSegmentCount(long count) { _segmentCount = count > 0 ? count : 0; }
    bool showsValue() const { return _showsValue; }
    void setShowsValue(bool shows) { _showsValue = shows; }

    /// Where the value's text is drawn, in a slider of those bounds.
    virtual CGRect valueTextRectForBounds(const CGRect& bounds) const;
    /// Where the track is drawn, in a slider of those bounds.
    CGRect trackRectForBounds(const CGRect& bounds) const;
    /// The value as the slider shows it.
    std::string valueText() const;

    float restingValue(float value) const override;

private:
    long _segmentCount = 0;
    bool _showsValue = false;
};

/// A row with a slider, whose range, steps and value come from the row's properties.
class PSSliderTableCell : public PSControlTableCell {
    NS_CLASS(PSSliderTableCell, PSControlTableCell)
public:
    void setControl(std::shared_ptr<UIControl> control) override;
    Value controlValue() const override;

    bool initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle style, std::optional<std::string> reuseIdentifier, const Row& row) override;
    void refreshCellContentsWithSpecifier(const Row& row) override;
    double heightThatFits(double width) const override;
    /// The title in the middle of the row, and the slider in the place of the title's last line.
    void layoutSubviews() override;

private:
    double extraTitleHeight(double width) const;
};
