#include "contactsheet/ContactSheetPictures.h"
#include "contactsheet/ContactSheetLayout.h"
#include "images/ImageLoader.h"
#include "ports/WorkQueue.h"
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <utility>

namespace pixelhain {

namespace {

PdfPicture pictureOf(
    ContactSheetPictures::Services const& services, FileUrl const& url, int thumbnailPixels)
{
    auto const& white = ContactSheetLayout::cellWhite;
    if (auto const image = services.loader.cachedThumbnail(url, thumbnailPixels))
        return services.pdf.pictureOf(image->image, white);
    auto const picture = services.loader.decodeOrPass(url, thumbnailPixels);
    if (!picture)
        return {};
    if (picture->jpeg)
        return { picture->jpeg.size, picture->jpeg.bytes };
    return services.pdf.pictureOf(picture->bitmap, white);
}

} // namespace

// Outlives the items that never begin.
struct ContactSheetPictures::Shared {
    std::mutex lock;
    std::condition_variable changed;
    std::map<std::size_t, PdfPicture> ready; ///< by the photo's index
    std::exception_ptr failure; ///< the first that a picture met with
    std::size_t running = 0;
    bool isOver = false;

    // Whether the item may touch anything else.
    bool begin()
    {
        std::scoped_lock const guard(lock);
        if (isOver)
            return false;
        ++running;
        return true;
    }

    void end(std::size_t index, PdfPicture picture)
    {
        std::scoped_lock const guard(lock);
        ready.emplace(index, std::move(picture));
        --running;
        changed.notify_all();
    }

    void fail(std::exception_ptr reason)
    {
        std::scoped_lock const guard(lock);
        failure = std::move(reason);
        --running;
        changed.notify_all();
    }
};

ContactSheetPictures::ContactSheetPictures(
    Services const& services, std::span<PhotoItem const> photos, int thumbnailPixels)
    : services_(services)
    , photos_(photos)
    , thumbnailPixels_(thumbnailPixels)
    // Enough that a slow photo does not hold up the rest, few enough that little memory is needed.
    , ahead_(4 * services.width + 4)
    , shared_(std::make_shared<Shared>())
{
}

ContactSheetPictures::~ContactSheetPictures()
{
    std::unique_lock guard(shared_->lock);
    shared_->isOver = true;
    shared_->changed.wait(guard, [this] { return shared_->running == 0; });
}

PdfPicture ContactSheetPictures::next()
{
    askAhead();
    std::unique_lock guard(shared_->lock);
    auto& ready = shared_->ready;
    shared_->changed.wait(guard, [&] { return ready.contains(taken_) || shared_->failure; });
    if (shared_->failure)
        std::rethrow_exception(shared_->failure);
    return std::move(ready.extract(taken_++).mapped());
}

void ContactSheetPictures::askAhead()
{
    for (; asked_ < photos_.size() && asked_ < taken_ + ahead_; ++asked_) {
        services_.queue.add([services = services_, shared = shared_, pixels = thumbnailPixels_,
                                index = asked_, url = photos_[asked_].url] {
            if (!shared->begin())
                return;
            // The queue's threads are not for exceptions, and who waits wants to hear of them.
            try {
                shared->end(index, pictureOf(services, url, pixels));
            } catch (...) {
                shared->fail(std::current_exception());
            }
        });
    }
}

} // namespace pixelhain
