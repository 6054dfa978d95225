#include "Linux/Telephony/SimCard.h"

#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <array>
#include <glib.h>
#include <memory>

namespace {

constexpr const char* digits = "0123456789";
constexpr const char* fillers = "Ff";
/// The standard has up to 22 digits with room for a filler; cards in the wild have 18 and more.
constexpr std::size_t fewestDigits = 10;
constexpr std::size_t mostDigits = 22;

constexpr std::size_t uuidLength = 16;
using Uuid = std::array<guint8, uuidLength>;
/// The name space of our keys. It must never change: logos and bindings are kept by these keys.
constexpr Uuid simNamespace { 0x6d, 0x1f, 0x7a, 0x52, 0x0c, 0x4e, 0x5b, 0x37, 0x9a, 0x63, 0x2e, 0x8f, 0x41, 0xd0, 0x7b,
    0x19 };
constexpr guint8 version5 = 0x50;
constexpr guint8 versionMask = 0x0F;
constexpr guint8 variant = 0x80;
constexpr guint8 variantMask = 0x3F;
constexpr gsize sha1Length = 20;

std::string textOf(const Uuid& uuid)
{
    std::string text;
    for (std::size_t i = 0; i < uuid.size(); ++i) {
        constexpr const char* hexadecimal = "0123456789ABCDEF";
        constexpr int halfByte = 4;
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += hexadecimal[uuid[i] >> halfByte];
        text += hexadecimal[uuid[i] & versionMask];
    }
    return text;
}

} // namespace

std::string plainIccid(const std::string& text)
{
    const std::string number = trimmed(text);
    const std::size_t count = std::min(number.find_first_not_of(digits), number.size());
    const bool isIccid =
        count >= fewestDigits && count <= mostDigits && number.find_first_not_of(fillers, count) == std::string::npos;
    return isIccid ? number.substr(0, count) : std::string();
}

std::string simKeyOf(const std::string& iccid)
{
    const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> sum(g_checksum_new(G_CHECKSUM_SHA1), g_checksum_free);
    g_checksum_update(sum.get(), simNamespace.data(), simNamespace.size());
    g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(iccid.data()), static_cast<gssize>(iccid.size()));
    std::array<guint8, sha1Length> digest {};
    gsize length = digest.size();
    g_checksum_get_digest(sum.get(), digest.data(), &length);
    Uuid uuid {};
    std::copy_n(digest.begin(), uuid.size(), uuid.begin());
    uuid[6] = static_cast<guint8>((uuid[6] & versionMask) | version5);
    uuid[8] = static_cast<guint8>((uuid[8] & variantMask) | variant);
    return textOf(uuid);
}
