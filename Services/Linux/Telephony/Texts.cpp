#include "Linux/Telephony/Texts.h"

#include <glib.h>
#include <memory>

namespace {

using Text = std::unique_ptr<char, decltype(&g_free)>;

Text validText(const std::string& text)
{
    return { g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free };
}

bool isSpaceOrControl(gunichar character)
{
    return g_unichar_isspace(character) || g_unichar_iscntrl(character);
}

} // namespace

std::string plainLine(const std::string& text)
{
    const Text valid = validText(text);
    std::string line;
    bool isGap = false;
    for (const char* place = valid.get(); *place;) {
        const char* const next = g_utf8_next_char(place);
        const bool isBlank = isSpaceOrControl(g_utf8_get_char(place));
        if (!isBlank && isGap && !line.empty())
            line += ' ';
        if (!isBlank)
            line.append(place, next);
        isGap = isBlank;
        place = next;
    }
    return line;
}

std::string trimmed(const std::string& text)
{
    const Text valid = validText(text);
    const char* first = valid.get();
    while (*first && g_unichar_isspace(g_utf8_get_char(first)))
        first = g_utf8_next_char(first);
    const char* end = first;
    for (const char* place = first; *place; place = g_utf8_next_char(place)) {
        if (!g_unichar_isspace(g_utf8_get_char(place)))
            end = g_utf8_next_char(place);
    }
    return { first, end };
}

std::string caseFolded(const std::string& text)
{
    const Text folded(g_utf8_casefold(validText(text).get(), -1), g_free);
    return folded.get();
}
