#include "codecs/XmpLens.h"
#include "codecs/PropertyLimits.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace pixelhain {

namespace {

constexpr std::string_view wantedName = "aux:Lens";
constexpr std::string_view spaces = " \t\r\n";

void appendUtf8(std::string& text, std::uint32_t code)
{
    auto const put = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

// Appends what the entity `name` stands for; false if it stands for nothing.
bool appendEntity(std::string& text, std::string_view name)
{
    struct Entity {
        std::string_view name;
        char letter;
    };
    constexpr auto known = std::to_array<Entity>(
        { { "amp", '&' }, { "lt", '<' }, { "gt", '>' }, { "quot", '"' }, { "apos", '\'' } });
    auto const found = std::ranges::find(known, name, &Entity::name);
    if (found != known.end()) {
        text += found->letter;
        return true;
    }
    if (!name.starts_with('#'))
        return false;
    name.remove_prefix(1);
    auto const isHexadecimal = name.starts_with('x');
    if (isHexadecimal)
        name.remove_prefix(1);
    std::uint32_t code = 0;
    auto const* const end = name.data() + name.size();
    auto const [stopped, error] = std::from_chars(name.data(), end, code, isHexadecimal ? 16 : 10);
    auto const isLetter = code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    if (error != std::errc() || stopped != end || !isLetter)
        return false;
    appendUtf8(text, code);
    return true;
}

std::string decoded(std::string_view raw)
{
    constexpr std::size_t longestEntity = 10;
    raw = raw.substr(0, PropertyLimits::text);
    std::string text;
    while (!raw.empty()) {
        auto const end = raw.front() == '&' ? raw.substr(0, longestEntity).find(';') : raw.npos;
        if (end != raw.npos && appendEntity(text, raw.substr(1, end - 1))) {
            raw.remove_prefix(end + 1);
            continue;
        }
        text += spaces.find(raw.front()) != spaces.npos ? ' ' : raw.front();
        raw.remove_prefix(1);
    }
    return text;
}

/// Goes through a packet from mark to mark.
class PacketScan {
public:
    explicit PacketScan(std::string_view packet)
        : rest_(packet)
    {
    }

    std::optional<std::string> find()
    {
        while (skipTo("<")) {
            if (rest_.starts_with("!--"))
                skipTo("-->");
            else if (rest_.starts_with("![CDATA["))
                skipTo("]]>");
            else if (rest_.starts_with('?'))
                skipTo("?>");
            else if (rest_.starts_with('/') || rest_.starts_with('!'))
                skipTo(">");
            else if (auto found = lensInElement())
                return found;
        }
        return {};
    }

private:
    // Goes behind the next `mark`; false, and to the end, if there is none.
    bool skipTo(std::string_view mark)
    {
        auto const at = rest_.find(mark);
        rest_.remove_prefix(at == rest_.npos ? rest_.size() : at + mark.size());
        return at != std::string_view::npos;
    }

    void skipSpaces()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(spaces), rest_.size()));
    }

    std::string_view takeName()
    {
        auto const name = rest_.substr(0, rest_.find_first_of(" \t\r\n=></\"'"));
        rest_.remove_prefix(name.size());
        return name;
    }

    // Behind the "<" of an element; ends behind its ">".
    std::optional<std::string> lensInElement()
    {
        auto const isWanted = takeName() == wantedName;
        bool isEmpty = false;
        for (;;) {
            skipSpaces();
            if (rest_.empty() || rest_.front() == '<')
                return {};
            if (rest_.front() == '>') {
                rest_.remove_prefix(1);
                break;
            }
            isEmpty = rest_.front() == '/';
            if (auto found = lensInAttribute())
                return found;
        }
        if (!isWanted || isEmpty)
            return {};
        auto text = rest_.substr(0, rest_.find('<'));
        text.remove_prefix(std::min(text.find_first_not_of(spaces), text.size()));
        return decoded(text.substr(0, text.find_last_not_of(spaces) + 1));
    }

    // Takes an attribute, or a single letter where there is none.
    std::optional<std::string> lensInAttribute()
    {
        auto const name = takeName();
        skipSpaces();
        if (name.empty() || !rest_.starts_with('=')) {
            if (name.empty() && !rest_.empty())
                rest_.remove_prefix(1);
            return {};
        }
        rest_.remove_prefix(1);
        skipSpaces();
        if (!rest_.starts_with('"') && !rest_.starts_with('\''))
            return {};
        auto const quote = rest_.substr(0, 1);
        rest_.remove_prefix(1);
        auto const value = rest_.substr(0, rest_.find(quote));
        if (!skipTo(quote) || name != wantedName)
            return {};
        return decoded(value);
    }

    std::string_view rest_;
};

} // namespace

std::optional<std::string> xmpLens(std::string_view packet)
{
    return PacketScan(packet).find();
}

} // namespace pixelhain
