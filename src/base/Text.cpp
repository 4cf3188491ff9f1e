#include "base/Text.h"

namespace pixelhain {

namespace {

unsigned char byteAt(std::string_view text, std::size_t index)
{
    return static_cast<unsigned char>(text[index]);
}

struct LeadByte {
    std::size_t length = 0;
    unsigned char secondFrom = 0x80;
    unsigned char secondTo = 0xBF;
};

// The well-formed sequences of the Unicode standard, table 3-7.
LeadByte classify(unsigned char lead)
{
    if (lead < 0x80)
        return { 1 };
    if (lead >= 0xC2 && lead <= 0xDF)
        return { 2 };
    if (lead == 0xE0)
        return { 3, 0xA0, 0xBF };
    if (lead == 0xED)
        return { 3, 0x80, 0x9F };
    if (lead >= 0xE1 && lead <= 0xEF)
        return { 3 };
    if (lead == 0xF0)
        return { 4, 0x90, 0xBF };
    if (lead >= 0xF1 && lead <= 0xF3)
        return { 4 };
    if (lead == 0xF4)
        return { 4, 0x80, 0x8F };
    return {};
}

// How many bytes of a sequence that starts here are well-formed, and whether it is whole.
struct Prefix {
    std::size_t length = 1;
    bool whole = false;
};

Prefix wellFormedPrefix(std::string_view text)
{
    auto const lead = classify(byteAt(text, 0));
    if (lead.length <= 1)
        return { 1, lead.length == 1 };
    for (std::size_t i = 1; i < lead.length; ++i) {
        unsigned char const from = i == 1 ? lead.secondFrom : 0x80;
        unsigned char const to = i == 1 ? lead.secondTo : 0xBF;
        if (i >= text.size() || byteAt(text, i) < from || byteAt(text, i) > to)
            return { i, false };
    }
    return { lead.length, true };
}

} // namespace

std::string asciiLowercased(std::string_view text)
{
    std::string lower(text);
    for (auto& letter : lower)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return lower;
}

std::string_view trimmedBlanks(std::string_view text)
{
    auto const first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string displayText(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        auto const prefix = wellFormedPrefix(bytes);
        if (prefix.whole)
            text.append(bytes.substr(0, prefix.length));
        else
            text.append("\xEF\xBF\xBD");
        bytes.remove_prefix(prefix.length);
    }
    return text;
}

} // namespace pixelhain
