#include "codecs/PnmHeader.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include <charconv>
#include <string>
#include <string_view>

namespace pixelhain {

namespace {

// Programs write a comment or two; nobody writes a book.
constexpr std::size_t headerBytes = std::size_t { 16 } << 10;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The words of a header, comments left out.
class Words {
public:
    explicit Words(std::string_view text)
        : text_(text)
    {
    }

    std::string_view next()
    {
        while (at_ < text_.size() && (isBlank(text_[at_]) || text_[at_] == '#')) {
            if (text_[at_] == '#')
                skipLine();
            else
                ++at_;
        }
        auto const begin = at_;
        while (at_ < text_.size() && !isBlank(text_[at_]) && text_[at_] != '#')
            ++at_;
        return text_.substr(begin, at_ - begin);
    }

    std::optional<int> number()
    {
        auto const word = next();
        int value = 0;
        auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc() || end != word.data() + word.size() || value < 0)
            return {};
        return value;
    }

    void skipLine()
    {
        while (at_ < text_.size() && text_[at_] != '\n')
            ++at_;
    }

    /// Where the samples begin: one blank after the last word.
    [[nodiscard]] std::uint64_t end() const { return at_ + 1; }

private:
    std::string_view text_;
    std::size_t at_ = 0;
};

std::optional<PnmHeader> readAnymap(Words& words, char kind)
{
    using Samples = PnmHeader::Samples;
    PnmHeader header;
    auto const width = words.number();
    auto const height = words.number();
    if (!width || !height)
        return {};
    header.size = { *width, *height };
    header.channels = kind == '3' || kind == '6' ? 3 : 1;
    auto const isText = kind <= '3';
    if (kind == '1' || kind == '4') {
        header.most = 1;
        header.isInkOnOne = true;
        header.samples = isText ? Samples::text : Samples::bits;
    } else {
        auto const most = words.number();
        if (!most)
            return {};
        header.most = *most;
        header.samples = isText ? Samples::text
            : header.most > 255 ? Samples::words
                                : Samples::bytes;
    }
    header.offset = words.end();
    return header;
}

std::optional<PnmHeader> readPam(Words& words)
{
    PnmHeader header;
    for (auto word = words.next(); word != "ENDHDR"; word = words.next()) {
        if (word.empty())
            return {};
        if (word == "TUPLTYPE") {
            words.skipLine();
            continue;
        }
        auto const value = words.number();
        if (!value)
            return {};
        if (word == "WIDTH")
            header.size.width = *value;
        else if (word == "HEIGHT")
            header.size.height = *value;
        else if (word == "DEPTH")
            header.channels = *value;
        else if (word == "MAXVAL")
            header.most = *value;
    }
    header.samples = header.most > 255 ? PnmHeader::Samples::words : PnmHeader::Samples::bytes;
    header.offset = words.end();
    return header;
}

} // namespace

std::optional<PnmHeader> readPnmHeader(ByteSource const& bytes)
{
    auto const head = bytesAt(bytes, 0, headerBytes);
    std::string_view const text(reinterpret_cast<char const*>(head.data()), head.size());
    if (text.size() < 3 || text[0] != 'P' || text[1] < '1' || text[1] > '7')
        return {};
    Words words(text);
    if (words.next().size() != 2)
        return {};
    auto const header = text[1] == '7' ? readPam(words) : readAnymap(words, text[1]);
    if (!header || !isWithinLimits(header->size) || header->channels < 1 || header->channels > 4
        || header->most < 1 || header->most > 65535 || header->offset > head.size())
        return {};
    return header;
}

} // namespace pixelhain
