#include "icu/IcuTextOrder.h"
#include "icu/UserLocale.h"
#include <algorithm>
#include <array>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <vector>

namespace pixelhain {

namespace {

constexpr UChar32 replacementCharacter = 0xFFFD;

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(
        text, [](char letter) { return static_cast<signed char>(letter) >= 0; });
}

// UTF-16 of a name on the stack: file names have at most 255 bytes, and a byte of UTF-8 never
// makes more than one unit.
class Utf16 {
public:
    explicit Utf16(std::string_view text)
    {
        if (text.size() > fixed_.size()) {
            large_.resize(text.size());
            data_ = large_.data();
        }
        if (isAscii(text)) {
            std::ranges::copy(text, data_);
            length_ = static_cast<std::int32_t>(text.size());
            return;
        }
        UErrorCode error = U_ZERO_ERROR;
        auto const size = static_cast<std::int32_t>(text.size());
        u_strFromUTF8WithSub(
            data_, size, &length_, text.data(), size, replacementCharacter, nullptr, &error);
    }
    Utf16(Utf16 const&) = delete;
    Utf16& operator=(Utf16 const&) = delete;

    UChar const* data() const { return data_; }
    std::int32_t length() const { return length_; }

private:
    std::array<UChar, 256> fixed_;
    std::vector<UChar> large_;
    UChar* data_ = fixed_.data();
    std::int32_t length_ = 0;
};

icu::Locale localeNamed(std::string const& name)
{
    auto const locale = icu::Locale::createCanonical(name.c_str());
    return locale.isBogus() ? icu::Locale::getRoot() : locale;
}

std::unique_ptr<icu::Collator> makeCollator(icu::Locale const& locale)
{
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, error));
    if (U_FAILURE(error) || !collator)
        return nullptr;
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, error);
    // Letter case tells no names apart here, accents do.
    collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, error);
    // Some languages ignore punctuation by default; "a-b" and "ab" are different file names.
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, error);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, error);
    return collator;
}

std::weak_ordering orderingOf(UCollationResult result)
{
    if (result == UCOL_EQUAL)
        return std::weak_ordering::equivalent;
    return result == UCOL_LESS ? std::weak_ordering::less : std::weak_ordering::greater;
}

} // namespace

// Both are used through const members only, which may be called from several threads at once. Where
// ICU's data is missing they are null and bytes stand in for letters.
struct IcuTextOrder::Services {
    std::unique_ptr<icu::Collator const> collator;
    icu::Normalizer2 const* nfc = nullptr;
};

IcuTextOrder::IcuTextOrder(std::string const& locale)
{
    UErrorCode error = U_ZERO_ERROR;
    services_ = std::make_unique<Services const>(
        Services { makeCollator(localeNamed(locale)), icu::Normalizer2::getNFCInstance(error) });
}

IcuTextOrder::~IcuTextOrder() = default;

std::weak_ordering IcuTextOrder::compare(std::string_view a, std::string_view b) const
{
    if (!services_->collator)
        return a <=> b;
    Utf16 const left(a);
    Utf16 const right(b);
    UErrorCode error = U_ZERO_ERROR;
    return orderingOf(services_->collator->compare(
        left.data(), left.length(), right.data(), right.length(), error));
}

void IcuTextOrder::appendSortKey(std::string_view name, std::string& keys) const
{
    if (!services_->collator) {
        keys += name;
        return;
    }
    Utf16 const text(name);
    std::array<std::uint8_t, 512> fixed;
    auto const needed = services_->collator->getSortKey(
        text.data(), text.length(), fixed.data(), static_cast<std::int32_t>(fixed.size()));
    if (needed <= 0)
        return;
    auto const length = static_cast<std::size_t>(needed);
    if (length <= fixed.size()) {
        keys.append(reinterpret_cast<char const*>(fixed.data()), length - 1);
        return;
    }
    std::vector<std::uint8_t> large(length);
    services_->collator->getSortKey(text.data(), text.length(), large.data(), needed);
    keys.append(reinterpret_cast<char const*>(large.data()), length - 1);
}

std::string IcuTextOrder::folded(std::string_view text) const
{
    std::string result(text);
    if (isAscii(text)) {
        for (auto& letter : result)
            if (letter >= 'A' && letter <= 'Z')
                letter = static_cast<char>(letter - 'A' + 'a');
        return result;
    }
    Utf16 const units(text);
    icu::UnicodeString unicode(units.data(), units.length());
    // Folding may take a composed letter apart, so the result is composed once more.
    UErrorCode error = U_ZERO_ERROR;
    if (services_->nfc)
        unicode = services_->nfc->normalize(unicode, error);
    unicode.foldCase(U_FOLD_CASE_DEFAULT);
    if (services_->nfc)
        unicode = services_->nfc->normalize(unicode, error);
    result.clear();
    return unicode.toUTF8String(result);
}

std::string orderingLocale(std::function<char const*(char const*)> const& variable)
{
    return userLocale("LC_COLLATE", variable);
}

} // namespace pixelhain
