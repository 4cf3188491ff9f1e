#include "support/Places.h"

namespace pixelhain {

std::string buildFolder()
{
    return PIXELHAIN_BINARY_DIR;
}

std::string photosFolder()
{
    return PIXELHAIN_PHOTOS;
}

} // namespace pixelhain
