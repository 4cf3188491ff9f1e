#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// The text of a settings file: lines of `key=value`, and whatever else a person put there, which
/// stays. A value is `true` or `false`, a number, texts in quotation marks, or a list of those with
/// commas; bytes that would not survive an editor stand in texts as `\xHH`. Texts written by hand
/// may leave the quotation marks out.
class IniText {
public:
    IniText() = default;

    /// Lines that are neither a key with a value, nor a section, comment or blank are dropped.
    explicit IniText(std::string_view text);

    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;
    [[nodiscard]] std::optional<double> number(std::string_view key) const;
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const;
    /// A single text is a list of one.
    [[nodiscard]] std::optional<std::vector<std::string>> texts(std::string_view key) const;

    /// Each returns whether anything changed.
    bool setBoolean(std::string_view key, bool value);
    bool setNumber(std::string_view key, double value);
    bool setText(std::string_view key, std::string_view value);
    bool setTexts(std::string_view key, std::vector<std::string> const& values);

    [[nodiscard]] std::string toString() const;

private:
    struct Line {
        std::string key; ///< empty: kept as it is
        std::string value;
    };

    Line const* find(std::string_view key) const;
    bool set(std::string_view key, std::string value);

    std::vector<Line> lines_;
};

} // namespace pixelhain
