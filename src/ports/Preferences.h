#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// The program's settings store: typed values under short ASCII keys. Texts are bytes and come back
/// as they were stored, UTF-8 or not. A value that is absent or not of the type that is asked for
/// reads as nothing. Main thread only; writing does not wait for the disk.
class Preferences {
public:
    virtual ~Preferences() = default;

    [[nodiscard]] virtual std::optional<bool> boolean(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<double> number(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
    [[nodiscard]] virtual std::optional<std::vector<std::string>> texts(
        std::string_view key) const = 0;

    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setText(std::string_view key, std::string const& value) = 0;
    virtual void setTexts(std::string_view key, std::vector<std::string> const& values) = 0;
};

} // namespace pixelhain
