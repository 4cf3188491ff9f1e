#pragma once
#include "base/Failure.h"
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace pixelhain {

enum class OptionValue { none, required };

/// One option that a command knows, spelt with its dashes: "--sort", "-0".
struct Option {
    std::string_view name;
    OptionValue value = OptionValue::none;
};

/// The words after a command's name, told apart: options anywhere, "--sort size" or "--sort=size",
/// the last of a repeated one counts; everything after "--" and a lone "-" are operands.
class Arguments {
public:
    using Words = std::span<std::string_view const>;

    /// A failure names the word that is unknown, lacks its value or has one too many.
    [[nodiscard]] static std::variant<Arguments, Failure> parse(
        Words words, std::span<Option const> options);

    [[nodiscard]] bool has(std::string_view name) const { return values_.contains(name); }
    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;
    [[nodiscard]] std::vector<std::string_view> const& operands() const { return operands_; }

private:
    std::map<std::string_view, std::string_view> values_;
    std::vector<std::string_view> operands_;
};

/// A whole decimal number from `least` to `most`; nothing for any other text.
[[nodiscard]] std::optional<int> parseNumber(std::string_view text, int least, int most);

} // namespace pixelhain
