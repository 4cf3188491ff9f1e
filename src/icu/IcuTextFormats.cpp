#include "icu/IcuTextFormats.h"
#include "icu/UserLocale.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <unicode/datefmt.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace pixelhain {

namespace {

struct Unit {
    icu::MeasureUnit (*unit)();
    int decimals; ///< at most
};

constexpr auto units = std::to_array<Unit>({
    { icu::MeasureUnit::getByte, 0 },
    { icu::MeasureUnit::getKilobyte, 0 },
    { icu::MeasureUnit::getMegabyte, 1 },
    { icu::MeasureUnit::getGigabyte, 2 },
    { icu::MeasureUnit::getTerabyte, 2 },
    { icu::MeasureUnit::getPetabyte, 2 },
});

// In one language the data have a space that breaks, one that does not and a narrow one, by the
// unit; on a line with other units they must not differ, and people search for what they can type.
std::string withPlainSpaces(icu::UnicodeString text)
{
    for (char16_t const space : { u'\u00A0', u'\u202F', u'\u2009' })
        text.findAndReplace(icu::UnicodeString(space), icu::UnicodeString(u' '));
    std::string bytes;
    return text.toUTF8String(bytes);
}

std::string zeroBytes(icu::Locale const& locale)
{
    std::string_view const language = locale.getLanguage();
    if (language == "de")
        return "Null KB";
    return language == "en" ? "Zero KB" : std::string();
}

using Format = std::unique_ptr<icu::DateFormat>;

Format makeFormat(icu::DateFormat* format, std::string const& timeZone)
{
    Format made(format);
    if (made && !timeZone.empty())
        made->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
    return made;
}

} // namespace

struct IcuTextFormats::Services {
    icu::Locale numbers;
    icu::number::LocalizedNumberFormatter number;
    std::mutex lock; ///< for the formats of dates
    Format day;
    Format moment;

    std::string format(Format const& with, Timestamp when)
    {
        if (!with)
            return {};
        auto const milliseconds = std::chrono::floor<std::chrono::milliseconds>(when);
        icu::UnicodeString text;
        std::scoped_lock const guard(lock);
        with->format(static_cast<UDate>(milliseconds.time_since_epoch().count()), text);
        return withPlainSpaces(std::move(text));
    }
};

IcuTextFormats::IcuTextFormats(Locales const& locales, std::string const& timeZone)
    : services_(std::make_unique<Services>())
{
    using icu::DateFormat;
    services_->numbers = icu::Locale::createCanonical(locales.numbers.c_str());
    services_->number = icu::number::NumberFormatter::withLocale(services_->numbers)
                            .roundingMode(UNUM_ROUND_HALFUP);
    auto const dates = icu::Locale::createCanonical(locales.dates.c_str());
    services_->day
        = makeFormat(DateFormat::createDateInstance(DateFormat::kMedium, dates), timeZone);
    services_->moment = makeFormat(
        DateFormat::createDateTimeInstance(DateFormat::kMedium, DateFormat::kShort, dates),
        timeZone);
}

IcuTextFormats::~IcuTextFormats() = default;

std::string IcuTextFormats::byteCount(std::int64_t bytes) const
{
    auto const zero = zeroBytes(services_->numbers);
    if (bytes <= 0 && !zero.empty())
        return zero;
    // What rounding makes a thousand of is one of the next unit.
    auto unit = units.begin();
    auto value = static_cast<double>(std::max<std::int64_t>(bytes, 0));
    for (; value + 0.5 * std::pow(10, -unit->decimals) >= 1000 && unit + 1 != units.end(); ++unit)
        value /= 1000;
    UErrorCode error = U_ZERO_ERROR;
    auto const isWord = unit == units.begin();
    auto text = services_->number.unit(unit->unit())
                    .unitWidth(isWord ? UNUM_UNIT_WIDTH_FULL_NAME : UNUM_UNIT_WIDTH_SHORT)
                    .precision(icu::number::Precision::maxFraction(unit->decimals))
                    .formatDouble(value, error)
                    .toString(error);
    if (U_FAILURE(error))
        return std::to_string(bytes);
    // File managers write the unit of a thousand bytes as large as those above it.
    text.findAndReplace(u"kB", u"KB");
    return withPlainSpaces(std::move(text));
}

std::string IcuTextFormats::date(Timestamp moment) const
{
    return services_->format(services_->day, moment);
}

std::string IcuTextFormats::dateAndTime(Timestamp moment) const
{
    return services_->format(services_->moment, moment);
}

IcuTextFormats::Locales formatLocales(std::function<char const*(char const*)> const& variable)
{
    return { userLocale("LC_NUMERIC", variable), userLocale("LC_TIME", variable) };
}

} // namespace pixelhain
