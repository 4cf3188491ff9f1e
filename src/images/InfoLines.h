#pragma once
#include "model/PhotoItem.h"
#include "ports/PhotoProperties.h"
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

class ImageDecoder;
class TextFormats;

/// What is shown of a photo in words, a line each: its name; resolution and file size; when it was
/// taken, else when the file last changed; camera; lens; exposure. Lines that would be empty are
/// left out. `properties`: nothing for a file that cannot be read.
[[nodiscard]] std::vector<std::string> infoLines(PhotoItem const& item,
    std::optional<PhotoProperties> const& properties, TextFormats const& formats);

/// The same of what the file states. Reads it, so it waits for the disk; for any thread.
[[nodiscard]] std::vector<std::string> infoLines(
    PhotoItem const& item, ImageDecoder& decoder, TextFormats const& formats);

} // namespace pixelhain
