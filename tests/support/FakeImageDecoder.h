#pragma once
#include "ports/ImageDecoder.h"
#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// A plain picture of one value in every byte.
inline Bitmap grayBitmap(PixelSize size, int value = 0x80)
{
    auto bitmap = Bitmap::allocate(size, true);
    if (!bitmap.isEmpty())
        std::memset(bitmap.pixels.get(), value, bitmap.cost());
    return bitmap;
}

/// Answers for files that a test has put there, and records what it was asked. Thread-safe.
class FakeImageDecoder final : public ImageDecoder {
public:
    struct File {
        ImageMeta meta {};
        PixelSize decoded { 4, 3 }; ///< what every request for pixels gets
        std::optional<PhotoProperties> properties {};
        CodedJpeg jpeg {}; ///< what those get that take one
        PixelSize embedded {}; ///< of the picture that a first look yields; empty: none
        bool isQuick = false;
    };

    void put(FileUrl const& url, File const& file)
    {
        std::scoped_lock const guard(lock_);
        files_[url] = file;
    }
    void remove(FileUrl const& url)
    {
        std::scoped_lock const guard(lock_);
        files_.erase(url);
    }

    std::optional<DecodedPicture> decode(DecodeRequest const& request) override
    {
        auto const file = record(decodes_, request, request.file);
        if (whileDecoding)
            whileDecoding();
        if (!file)
            return std::nullopt;
        if (file->jpeg && request.smallJpegs == SmallJpegs::pass)
            return DecodedPicture { {}, PixelOrigin::full, file->jpeg };
        DecodedPicture picture { grayBitmap(file->decoded), PixelOrigin::full };
        std::scoped_lock const guard(lock_);
        lastPixels_ = picture.bitmap.pixels;
        return picture;
    }

    std::optional<ImageMeta> readMeta(FileUrl const& url) override
    {
        auto const file = record(metaReads_, url, url);
        return file ? std::optional(file->meta) : std::nullopt;
    }

    std::optional<Glance> glance(FileUrl const& url, int /*maxPixel*/) override
    {
        auto const file = record(glances_, url, url);
        if (!file)
            return std::nullopt;
        Glance glance { file->meta, {}, file->isQuick };
        if (file->embedded.width > 0)
            glance.embedded = grayBitmap(file->embedded);
        return glance;
    }

    std::optional<PhotoProperties> readProperties(FileUrl const& url) override
    {
        auto const file = record(propertyReads_, url, url);
        return file ? file->properties : std::nullopt;
    }

    std::unique_ptr<AnimationSource> openAnimation(FileUrl const& url, int maxPixel) override
    {
        return animationOf ? animationOf(url, maxPixel) : nullptr;
    }

    std::vector<DecodeRequest> decodes() const
    {
        std::scoped_lock const guard(lock_);
        return decodes_;
    }
    std::vector<FileUrl> metaReads() const
    {
        std::scoped_lock const guard(lock_);
        return metaReads_;
    }
    std::vector<FileUrl> glances() const
    {
        std::scoped_lock const guard(lock_);
        return glances_;
    }
    std::vector<FileUrl> propertyReads() const
    {
        std::scoped_lock const guard(lock_);
        return propertyReads_;
    }

    /// Whether anybody still has the picture that was decoded last.
    bool isLastAlive() const
    {
        std::scoped_lock const guard(lock_);
        return !lastPixels_.expired();
    }

    std::function<void()> whileDecoding; ///< set before use
    std::function<std::unique_ptr<AnimationSource>(FileUrl const&, int maxPixel)> animationOf;

private:
    template <typename Asked>
    std::optional<File> record(std::vector<Asked>& list, Asked const& asked, FileUrl const& url)
    {
        std::scoped_lock const guard(lock_);
        list.push_back(asked);
        auto const found = files_.find(url);
        return found == files_.end() ? std::nullopt : std::optional(found->second);
    }

    mutable std::mutex lock_;
    std::map<FileUrl, File> files_;
    std::vector<DecodeRequest> decodes_;
    std::vector<FileUrl> metaReads_;
    std::vector<FileUrl> glances_;
    std::vector<FileUrl> propertyReads_;
    std::weak_ptr<std::byte> lastPixels_;
};

} // namespace pixelhain
