#pragma once
#include "ports/ImageTypes.h"
#include <set>

namespace pixelhain {

/// A few formats, among them those that are images but never photos.
class FakeImageTypes final : public ImageTypes {
public:
    FakeImageTypes();
    ~FakeImageTypes() override;

    bool isImageExtension(std::string_view extension) const override;
};

} // namespace pixelhain
