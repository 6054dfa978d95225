#include "Linux/Telephony/SimCard.h"

#include <QRegularExpression>

namespace {

/// The standard has up to 22 digits with room for a filler; cards in the wild have 18 and more.
constexpr const char* iccidPattern = R"(^([0-9]{10,22})[Ff]*\z)";

} // namespace

QString plainIccid(const QString& text)
{
    static const QRegularExpression pattern { QLatin1String(iccidPattern) };
    return pattern.match(text.trimmed()).captured(1);
}
