#pragma once
#include "window/ThumbnailSource.h"
#include <cstdint>
#include <functional>
#include <optional>

namespace pixelhain {

/// How much of files was read to look for what they hold and for their pictures.
struct BytesRead {
    std::uint64_t pictures = 0;
    std::uint64_t looks = 0;
};

/// What one gallery cell loads, alive as long as the cell is: its thumbnail, its metadata, and
/// until the thumbnail is there one of another size or the small picture that its file holds.
/// Dropping this cancels all. Main thread only.
class ThumbnailCellLoads {
public:
    /// `changed` is called when something arrives later, not for what `show` finds in memory.
    ThumbnailCellLoads(ThumbnailSource& source, std::function<void()> changed);
    ThumbnailCellLoads(ThumbnailCellLoads const&) = delete;
    ThumbnailCellLoads& operator=(ThumbnailCellLoads const&) = delete;

    /// Shows `url` at `pixel` device pixels. What is in memory is there at once; the rest is asked
    /// for. The same again does nothing; another size keeps the picture until the better one
    /// arrives; another photo starts afresh.
    void show(FileUrl const& url, int pixel);

    /// When the turn of this cell comes; whether that changes anything.
    bool setTurn(Turn::Place place) { return turn_.set(place); }

    ImageRef const& image() const { return image_; }
    /// What may be seen while there is no picture and there may still be one; null: nothing. As far
    /// as anything else goes, the cell is still loading.
    ImageRef const& embedded() const { return embedded_; }
    std::optional<ImageMeta> const& meta() const { return meta_; }
    /// Of the file, for the picture and for the look before it.
    BytesRead bytesRead() const { return { image_ ? image_->bytesRead : 0, bytesLooked_ }; }
    bool failed() const { return failed_; }

    /// Whether there is nothing to wait for: the picture of the wanted size is here, or it has been
    /// found that there is none.
    bool isSettled() const { return isSettled_; }

private:
    void loadThumbnail();
    void use(ImageRef image);
    void looked(FirstLook const& look);
    void thumbnailArrived(ImageRef image);
    void loadMeta();
    void tellChanged() const;

    ThumbnailSource& source_;
    std::function<void()> changed_;
    FileUrl url_;
    int pixel_ = 0;
    Turn turn_;
    ImageRef image_;
    ImageRef embedded_;
    std::optional<ImageMeta> meta_;
    bool hasLooked_ = false; ///< at the metadata, whatever came of it
    std::uint64_t bytesLooked_ = 0; ///< read for that
    bool failed_ = false;
    bool isSettled_ = false;
    Task thumbnailTask_;
    Task metaTask_;
};

} // namespace pixelhain
