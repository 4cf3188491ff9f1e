#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include "ports/PhotoProperties.h"
#include <functional>
#include <memory>
#include <optional>

namespace pixelhain {

/// What the file states about its photo, by its EXIF blocks, XMP packets and maker notes; of the
/// size only what stands beside them.
[[nodiscard]] PhotoProperties gatherProperties(ByteSource const& bytes);

/// The same with the size in any case. `open` opens the image where that is needed; nothing for a
/// file that is none.
[[nodiscard]] std::optional<PhotoProperties> readFileProperties(std::unique_ptr<ByteSource> bytes,
    std::function<std::unique_ptr<ImageSource>(std::unique_ptr<ByteSource>)> const& open);

} // namespace pixelhain
