#include "app/HelpSearch.h"
#include "app/HelpTopics.h"
#include "app/InlineCharacters.h"
#include "base/Text.h"
#include "ports/TextOrder.h"
#include <algorithm>

namespace pixelhain {

namespace {

// The usual form of a letter or sign that is as wide as a Chinese one, or of a narrow arrow.
char32_t usualWidth(char32_t character)
{
    if (character >= 0xFF01 && character <= 0xFF5E)
        return character - 0xFF01 + '!';
    if (character >= 0xFFE9 && character <= 0xFFEC)
        return character - 0xFFE9 + U'←';
    return character == 0x3000 ? U' ' : character;
}

std::string inUsualWidth(std::string_view text)
{
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        auto const [character, length] = decodedCharacter(text, at);
        auto const usual = usualWidth(character);
        if (usual == character)
            result += text.substr(at, length);
        else
            appendCharacter(usual, result);
        at += length;
    }
    return result;
}

bool isAccent(char32_t character)
{
    return character >= 0x300 && character <= 0x36F;
}

// The end of the letter at `from`, with the accents that follow it.
std::size_t endOfLetter(std::string_view text, std::size_t from)
{
    auto end = from + decodedCharacter(text, from).length;
    while (end < text.size()) {
        auto const [character, length] = decodedCharacter(text, end);
        if (!isAccent(character))
            break;
        end += length;
    }
    return end;
}

} // namespace

HelpSearch::HelpSearch(std::string_view query, TextOrder const& order)
    : order_(order)
    , folded_(order.folded(inUsualWidth(trimmedBlanks(query))))
{
}

bool HelpSearch::isIn(std::string_view text) const
{
    return order_.folded(inUsualWidth(text)).find(folded_) != std::string::npos;
}

std::vector<HelpSearch::Match> HelpSearch::matches(std::string_view text) const
{
    std::vector<Match> result;
    if (isEmpty())
        return result;
    // Folding changes lengths, so letters are folded one by one to know where each came from.
    std::string folded;
    std::vector<Match> origins; // of each byte
    for (std::size_t at = 0; at < text.size();) {
        auto const end = endOfLetter(text, at);
        folded += order_.folded(inUsualWidth(text.substr(at, end - at)));
        origins.resize(folded.size(), { at, end });
        at = end;
    }
    for (auto at = folded.find(folded_); at != std::string::npos;) {
        auto const last = at + folded_.size() - 1;
        Match const match { origins[at].begin, origins[last].end };
        // Two matches may share a letter that folding takes apart.
        if (result.empty() || match.begin >= result.back().end)
            result.push_back(match);
        at = folded.find(folded_, last + 1);
    }
    return result;
}

std::vector<HelpTopic const*> filteredTopics(std::string_view query, TextOrder const& order)
{
    HelpSearch const search(query, order);
    std::vector<HelpTopic const*> found;
    for (auto const& topic : helpTopics())
        if (search.isIn(searchText(topic)))
            found.push_back(&topic);
    return found;
}

} // namespace pixelhain
