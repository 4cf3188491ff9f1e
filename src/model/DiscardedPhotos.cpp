#include "model/DiscardedPhotos.h"
#include "model/PhotoList.h"
#include "ports/Background.h"
#include <memory>
#include <utility>

namespace pixelhain {

namespace {

constexpr std::size_t quicklyFreed = 100'000;

} // namespace

void discardPhotos(Background& background, std::vector<PhotoItem> photos)
{
    if (photos.size() <= quicklyFreed)
        return;
    auto const gone = std::make_shared<std::vector<PhotoItem>>(std::move(photos));
    background.run(Priority::utility, [gone] { gone->clear(); });
}

void discardPhotos(Background& background, std::shared_ptr<PhotoList> photos)
{
    if (photos->items().size() > quicklyFreed)
        background.run(
            Priority::utility, [photos = std::move(photos)]() mutable { photos.reset(); });
}

} // namespace pixelhain
