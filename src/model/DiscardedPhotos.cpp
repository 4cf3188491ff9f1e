#include "model/DiscardedPhotos.h"
#include "ports/Background.h"
#include <memory>
#include <utility>

namespace pixelhain {

void discardPhotos(Background& background, std::vector<PhotoItem> photos)
{
    constexpr std::size_t quicklyFreed = 100'000;
    if (photos.size() <= quicklyFreed)
        return;
    auto const gone = std::make_shared<std::vector<PhotoItem>>(std::move(photos));
    background.run(Priority::utility, [gone] { gone->clear(); });
}

} // namespace pixelhain
