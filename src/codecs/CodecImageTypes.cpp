#include "codecs/CodecImageTypes.h"
#include "codecs/PhotoTypes.h"
#include <algorithm>

namespace pixelhain {

bool CodecImageTypes::isImageExtension(std::string_view extension) const
{
    return std::ranges::binary_search(photoTypes(), extension, {}, &PhotoType::extension);
}

} // namespace pixelhain
