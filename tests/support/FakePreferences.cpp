#include "support/FakePreferences.h"

namespace pixelhain {

FakePreferences::FakePreferences() = default;
FakePreferences::~FakePreferences() = default;

template <typename T> std::optional<T> FakePreferences::typed(std::string_view key) const
{
    auto const found = values.find(key);
    if (found == values.end() || !std::holds_alternative<T>(found->second))
        return std::nullopt;
    return std::get<T>(found->second);
}

std::optional<bool> FakePreferences::boolean(std::string_view key) const
{
    return typed<bool>(key);
}

std::optional<double> FakePreferences::number(std::string_view key) const
{
    return typed<double>(key);
}

std::optional<std::string> FakePreferences::text(std::string_view key) const
{
    return typed<std::string>(key);
}

std::optional<std::vector<std::string>> FakePreferences::texts(std::string_view key) const
{
    return typed<std::vector<std::string>>(key);
}

void FakePreferences::setBoolean(std::string_view key, bool value)
{
    set(key, value);
}

void FakePreferences::setNumber(std::string_view key, double value)
{
    set(key, value);
}

void FakePreferences::setText(std::string_view key, std::string const& value)
{
    set(key, value);
}

void FakePreferences::setTexts(std::string_view key, std::vector<std::string> const& value)
{
    set(key, value);
}

void FakePreferences::set(std::string_view key, Value value)
{
    values.insert_or_assign(std::string(key), std::move(value));
    ++writes[std::string(key)];
}

} // namespace pixelhain
