#include "TDSubtitleCell.h"

NS_IMPLEMENTATION(TDSubtitleCell)

bool TDSubtitleCell::initWithStyle_reuseIdentifier_specifier(
    UITableViewCellStyle /*style*/, std::optional<std::string> reuseIdentifier, const Row& row)
{
    return Super::initWithStyle_reuseIdentifier_specifier(
        UITableViewCellStyle::Subtitle, std::move(reuseIdentifier), row);
}

bool TDSubtitleCell::initWithSpecifier(const Row& row)
{
    return initWithStyle_reuseIdentifier_specifier(UITableViewCellStyle::Subtitle, std::nullopt, row);
}
