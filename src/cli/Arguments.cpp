#include "cli/Arguments.h"
#include "base/Text.h"
#include <algorithm>
#include <charconv>

namespace pixelhain {

namespace {

Failure failure(std::string_view what, std::string_view word)
{
    return { std::string(what) + ": " + displayText(word) };
}

} // namespace

std::variant<Arguments, Failure> Arguments::parse(Words words, std::span<Option const> options)
{
    Arguments arguments;
    bool onlyOperands = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        auto const word = words[i];
        if (onlyOperands || word.size() < 2 || word.front() != '-') {
            arguments.operands_.push_back(word);
            continue;
        }
        if (word == "--") {
            onlyOperands = true;
            continue;
        }
        auto const equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
        auto const name = word.substr(0, equals);
        auto const option = std::ranges::find(options, name, &Option::name);
        if (option == options.end())
            return failure("unknown option", name);
        auto& value = arguments.values_[option->name];
        if (option->value == OptionValue::none) {
            if (equals != std::string_view::npos)
                return failure("option takes no value", name);
        } else if (equals != std::string_view::npos) {
            value = word.substr(equals + 1);
        } else if (++i < words.size()) {
            value = words[i];
        } else {
            return failure("option lacks its value", name);
        }
    }
    return arguments;
}

std::optional<std::string_view> Arguments::value(std::string_view name) const
{
    auto const found = values_.find(name);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<int> parseNumber(std::string_view text, int least, int most)
{
    int number = 0;
    auto const* const end = text.data() + text.size();
    auto const [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stopped != end || number < least || number > most)
        return std::nullopt;
    return number;
}

} // namespace pixelhain
