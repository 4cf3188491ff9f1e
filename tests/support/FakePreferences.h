#pragma once
#include "ports/Preferences.h"
#include <map>
#include <variant>

namespace pixelhain {

/// A settings store in memory. `values` may be filled and read by a test.
class FakePreferences final : public Preferences {
public:
    FakePreferences();
    ~FakePreferences() override;

    using Value = std::variant<bool, double, std::string, std::vector<std::string>>;

    std::optional<bool> boolean(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> text(std::string_view key) const override;
    std::optional<std::vector<std::string>> texts(std::string_view key) const override;

    void setBoolean(std::string_view key, bool value) override;
    void setNumber(std::string_view key, double value) override;
    void setText(std::string_view key, std::string const& value) override;
    void setTexts(std::string_view key, std::vector<std::string> const& value) override;

    std::map<std::string, Value, std::less<>> values;
    std::map<std::string, int, std::less<>> writes;

private:
    template <typename T> std::optional<T> typed(std::string_view key) const;
    void set(std::string_view key, Value value);
};

} // namespace pixelhain
