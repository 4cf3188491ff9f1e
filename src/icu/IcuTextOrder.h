#pragma once
#include "ports/TextOrder.h"
#include <functional>
#include <memory>
#include <string>

namespace pixelhain {

/// Natural order and search by the Unicode rules of one language.
class IcuTextOrder final : public TextOrder {
public:
    /// `locale` as ICU or POSIX write it: "de_DE", "sv_SE.UTF-8". An unknown one orders by the
    /// rules that hold for no language in particular.
    explicit IcuTextOrder(std::string const& locale);
    ~IcuTextOrder() override;

    [[nodiscard]] std::weak_ordering compare(std::string_view a, std::string_view b) const override;
    void appendSortKey(std::string_view name, std::string& keys) const override;
    [[nodiscard]] std::string folded(std::string_view text) const override;

private:
    struct Services;
    std::unique_ptr<Services const> services_;
};

/// The language that names are ordered by, from the variables LC_ALL, LC_COLLATE and LANG; German
/// where they ask for none. `variable` yields a variable's value or null, as getenv does.
std::string orderingLocale(std::function<char const*(char const*)> const& variable);

} // namespace pixelhain
