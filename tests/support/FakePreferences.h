#pragma once
#include "ports/Preferences.h"
#include <map>
#include <variant>

namespace pixelhain {

/// A settings store in memory. `values` may be filled and read by a test.
class FakePreferences final : public Preferences {
public:
    using Value = std::variant<bool, double, std::string, std::vector<std::string>>;

    std::optional<bool> boolean(std::string_view key) const override { return typed<bool>(key); }
    std::optional<double> number(std::string_view key) const override { return typed<double>(key); }
    std::optional<std::string> text(std::string_view key) const override
    {
        return typed<std::string>(key);
    }
    std::optional<std::vector<std::string>> texts(std::string_view key) const override
    {
        return typed<std::vector<std::string>>(key);
    }

    void setBoolean(std::string_view key, bool value) override { set(key, value); }
    void setNumber(std::string_view key, double value) override { set(key, value); }
    void setText(std::string_view key, std::string const& value) override { set(key, value); }
    void setTexts(std::string_view key, std::vector<std::string> const& value) override
    {
        set(key, value);
    }

    std::map<std::string, Value, std::less<>> values;
    std::map<std::string, int, std::less<>> writes;

private:
    template <typename T> std::optional<T> typed(std::string_view key) const
    {
        auto const found = values.find(key);
        if (found == values.end() || !std::holds_alternative<T>(found->second))
            return std::nullopt;
        return std::get<T>(found->second);
    }

    void set(std::string_view key, Value value)
    {
        values.insert_or_assign(std::string(key), std::move(value));
        ++writes[std::string(key)];
    }
};

} // namespace pixelhain
