#pragma once
#include "ports/ImageTypes.h"

namespace pixelhain {

/// The extensions of the formats that count as photos. Apart from the codecs, whose libraries a
/// program that only asks for names does not load.
class CodecImageTypes final : public ImageTypes {
public:
    [[nodiscard]] bool isImageExtension(std::string_view extension) const override;
};

} // namespace pixelhain
