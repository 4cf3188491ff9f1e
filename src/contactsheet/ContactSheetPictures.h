#pragma once
#include "contactsheet/ContactSheetOptions.h"
#include "model/PhotoItem.h"
#include "ports/PdfWriter.h"
#include <cstddef>
#include <memory>
#include <span>

namespace pixelhain {

class ImageLoader;
class WorkQueue;

/// The thumbnails of photos in their order, made ahead of whoever takes them, side by side. What
/// waits to be taken is bounded, however many photos there are. Not thread-safe.
class ContactSheetPictures {
public:
    /// All must outlive this. Thumbnails in the loader's cache are used; others are not put there,
    /// so that a long sheet neither fills the memory nor drives out what the gallery shows.
    struct Services {
        ImageLoader const& loader;
        WorkQueue& queue;
        std::size_t width = 2; ///< items that the queue works on side by side
        PdfWriter& pdf;
    };

    /// `photos` must outlive this.
    ContactSheetPictures(
        Services const& services, std::span<PhotoItem const> photos, int thumbnailPixels);
    ContactSheetPictures(ContactSheetPictures const&) = delete;
    ContactSheetPictures& operator=(ContactSheetPictures const&) = delete;
    /// Waits for the thumbnails that are being made, and for no others.
    ~ContactSheetPictures();

    /// The next photo's; empty if it has none. Waits until it is there. Throws what one of them
    /// met with, such as a lack of memory: then there are no others either.
    [[nodiscard]] PdfPicture next();

private:
    struct Shared;

    void askAhead();

    Services services_;
    std::span<PhotoItem const> photos_;
    int const thumbnailPixels_;
    std::size_t const ahead_;
    std::size_t asked_ = 0;
    std::size_t taken_ = 0;
    std::shared_ptr<Shared> shared_;
};

} // namespace pixelhain
