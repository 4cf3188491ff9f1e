#include "model/Messages.h"

namespace pixelhain {

std::string messages::folderCount(std::size_t count)
{
    return std::to_string(count) + " Ordner";
}

std::string messages::photoCount(std::size_t count)
{
    return std::to_string(count) + " Fotos";
}

} // namespace pixelhain
