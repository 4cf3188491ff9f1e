#pragma once
#include "ports/TextFormats.h"

namespace pixelhain {

/// Writes plain numbers that tests can tell apart.
class FakeTextFormats final : public TextFormats {
public:
    [[nodiscard]] std::string byteCount(std::int64_t bytes) const override
    {
        return std::to_string(bytes) + " B";
    }
    [[nodiscard]] std::string date(Timestamp moment) const override
    {
        return "day " + std::to_string(seconds(moment) / 86400);
    }
    [[nodiscard]] std::string dateAndTime(Timestamp moment) const override
    {
        return "second " + std::to_string(seconds(moment));
    }

private:
    [[nodiscard]] static std::int64_t seconds(Timestamp moment)
    {
        return std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
    }
};

} // namespace pixelhain
