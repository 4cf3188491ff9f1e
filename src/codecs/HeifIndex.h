#pragma once
#include "base/Geometry.h"
#include "codecs/IsoBoxes.h"
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace pixelhain {

/// What a HEIF file says about the pictures in it, read before a decoder sees any of it: sizes,
/// thumbnails and colours in a few kilobytes, and whether it holds together.
class HeifIndex {
public:
    using ItemId = std::uint32_t;

    /// Colours by the code points that video formats share.
    struct CodePoints {
        int primaries = 2; ///< 2: not stated
        int transfer = 2;
    };

    /// Bytes to put in place of some of the file.
    struct Patch {
        std::uint64_t offset = 0;
        std::array<std::uint8_t, 8> bytes {};
        std::size_t length = 0;
    };

    struct Thumbnail {
        ItemId item = 0;
        PixelSize size; ///< upright
    };

    /// Nothing if there is no primary picture with a size, or if it refers to itself or to more
    /// pictures than any camera writes. `bytes` must outlive the index.
    [[nodiscard]] static std::optional<HeifIndex> read(ByteSource const& bytes);

    [[nodiscard]] ItemId primary() const { return primary_; }
    /// Upright: cropped, turned and mirrored as the file asks for.
    [[nodiscard]] PixelSize size() const { return uprightSizeOf(primary_).value_or(PixelSize {}); }
    /// Before it is cropped, turned and mirrored.
    [[nodiscard]] PixelSize storedSize() const
    {
        return codedSizeOf(primary_).value_or(PixelSize {});
    }
    /// Cropped, but not turned.
    [[nodiscard]] PixelSize unturnedSize() const;
    /// The EXIF orientation that says the same as the file's own turns; nothing if it is cropped or
    /// mirrored as well.
    [[nodiscard]] std::optional<int> orientation() const;
    /// Whether its channels have more than 8 bits.
    [[nodiscard]] bool isDeep() const;

    /// The thumbnails of the primary picture, by their longest side ascending.
    [[nodiscard]] std::vector<Thumbnail> thumbnails() const;
    /// Pictures that are no part, thumbnail or channel of another; the frames of a sequence.
    [[nodiscard]] std::size_t pictures() const;
    /// Whether the file ends before one of these pictures does.
    [[nodiscard]] bool isCut() const;

    [[nodiscard]] std::optional<ByteRange> profile() const;
    [[nodiscard]] std::optional<CodePoints> codePoints() const;
    /// The EXIF block of the primary picture, from its TIFF header on.
    [[nodiscard]] std::optional<ByteRange> exif() const;
    /// Texts that describe the primary picture, such as its XMP packet.
    [[nodiscard]] std::vector<ByteRange> texts() const;

    /// Pixels that are decoded for `item`, tiles and alpha included; nothing if it does not hold
    /// together.
    [[nodiscard]] std::optional<std::int64_t> decodedPixels(ItemId item) const;

    /// What makes the file one that holds `item` and its parts only, `item` being the primary
    /// picture; by offset ascending. A decoder then reads no byte of anything else.
    [[nodiscard]] std::vector<Patch> patchesFor(ItemId item) const;

private:
    struct Item {
        std::uint32_t type = 0;
        std::uint64_t typeOffset = 0; ///< where that is said
        bool isHidden = false;
        std::vector<std::size_t> properties;
        ByteRange data; ///< empty if it is not in one piece
        bool isCut = false;
        std::vector<ByteRange> lengthPlaces; ///< where the lengths of its pieces stand
    };
    struct Reference {
        std::uint32_t type = 0;
        std::uint64_t typeOffset = 0;
        ItemId from = 0;
        std::vector<ItemId> to;
    };
    struct Cost {
        std::int64_t pixels = 0;
        std::size_t pictures = 0;
    };
    using Costs = std::map<ItemId, std::optional<Cost>>;

    explicit HeifIndex(ByteSource const& bytes)
        : bytes_(&bytes)
    {
    }
    bool readMeta(ByteRange meta);
    void readItems(ByteRange table);
    void readLocations(ByteRange table, std::optional<ByteRange> inner);
    void readReferences(ByteRange table);
    void readProperties(ByteRange table);
    void readAssociations(ByteRange table);

    void findParts();

    [[nodiscard]] std::vector<std::uint8_t> tableAt(ByteRange range) const;
    [[nodiscard]] Item const* find(ItemId item) const;
    [[nodiscard]] bool isAlpha(ItemId item) const;
    [[nodiscard]] std::vector<ByteRange> descriptions(std::uint32_t type) const;
    [[nodiscard]] std::vector<ItemId> partsOf(ItemId item) const;
    [[nodiscard]] std::vector<IsoBox> propertiesOf(ItemId item) const;
    [[nodiscard]] std::optional<PixelSize> codedSizeOf(ItemId item) const;
    [[nodiscard]] std::optional<PixelSize> uprightSizeOf(ItemId item) const;
    [[nodiscard]] PixelSize croppedSize(PixelSize size, ByteRange clap) const;
    [[nodiscard]] std::optional<PixelSize> canvasOf(Item const& item) const;
    [[nodiscard]] std::optional<Cost> costOf(ItemId item, int depth, Costs& known) const;
    [[nodiscard]] std::optional<IsoBox> colorProperty(bool isProfile) const;
    [[nodiscard]] std::map<ItemId, Item> ownPictures() const;
    [[nodiscard]] std::size_t sequenceFrames() const;

    ByteSource const* bytes_;
    ItemId primary_ = 0;
    ByteRange primaryPlace_; ///< where its number stands
    std::map<ItemId, Item> items_;
    std::vector<Reference> references_;
    std::map<ItemId, std::vector<ItemId>> parts_;
    std::vector<IsoBox> properties_;
};

} // namespace pixelhain
