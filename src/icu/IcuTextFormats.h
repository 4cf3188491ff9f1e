#pragma once
#include "ports/TextFormats.h"
#include <functional>
#include <memory>
#include <string>

namespace pixelhain {

/// Numbers and dates by the conventions that the Unicode consortium keeps for each language.
class IcuTextFormats final : public TextFormats {
public:
    /// Locales as ICU or POSIX write them: "de_DE", "sv_SE.UTF-8".
    struct Locales {
        std::string numbers;
        std::string dates;
    };

    /// `timeZone` by its name in the time zone database; empty: the system's.
    explicit IcuTextFormats(Locales const& locales, std::string const& timeZone = {});
    ~IcuTextFormats() override;

    [[nodiscard]] std::string byteCount(std::int64_t bytes) const override;
    [[nodiscard]] std::string date(Timestamp moment) const override;
    [[nodiscard]] std::string dateAndTime(Timestamp moment) const override;

private:
    struct Services;
    std::unique_ptr<Services> services_;
};

/// The conventions that the environment asks for, by LC_NUMERIC and LC_TIME. `variable` yields a
/// variable's value or null, as getenv does.
IcuTextFormats::Locales formatLocales(std::function<char const*(char const*)> const& variable);

} // namespace pixelhain
