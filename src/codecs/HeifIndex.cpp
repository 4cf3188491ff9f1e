#include "codecs/HeifIndex.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace pixelhain {

namespace {

constexpr auto imageTypes = std::to_array<std::uint32_t>({ fourCharacters("hvc1"),
    fourCharacters("av01"), fourCharacters("grid"), fourCharacters("iden"), fourCharacters("iovl"),
    fourCharacters("avc1"), fourCharacters("jpeg"), fourCharacters("j2k1"), fourCharacters("vvc1"),
    fourCharacters("unci") });

bool isImage(std::uint32_t type)
{
    return std::ranges::find(imageTypes, type) != imageTypes.end();
}

// The side that a crop leaves of one of `length`, rounded to whole pixels as the decoder does.
int croppedSide(int length, std::array<double, 4> const& clap)
{
    auto const side = clap[0] / clap[1];
    auto const first = std::floor(clap[2] / clap[3] + (length - 1) / 2.0 - (side - 1) / 2);
    auto const last = std::round(side - 1 + first);
    auto const within = std::min(last, length - 1.0) - std::max(first, 0.0) + 1;
    return within >= 1 ? static_cast<int>(within) : 0;
}

std::optional<PixelSize> sizeWithinLimits(std::uint32_t width, std::uint32_t height)
{
    if (!isWithinLimits(width, height))
        return {};
    return PixelSize { static_cast<int>(width), static_cast<int>(height) };
}

} // namespace

HeifIndex::Item const* HeifIndex::find(ItemId item) const
{
    auto const found = items_.find(item);
    return found != items_.end() ? &found->second : nullptr;
}

std::vector<IsoBox> HeifIndex::propertiesOf(ItemId item) const
{
    std::vector<IsoBox> found;
    auto const* known = find(item);
    for (auto const property : known != nullptr ? known->properties : std::vector<std::size_t> {}) {
        if (property < properties_.size())
            found.push_back(properties_[property]);
    }
    return found;
}

std::optional<PixelSize> HeifIndex::codedSizeOf(ItemId item) const
{
    auto const* known = find(item);
    if (known == nullptr)
        return {};
    if (known->type == fourCharacters("grid") || known->type == fourCharacters("iovl"))
        return canvasOf(*known);
    for (auto const& [type, contents] : propertiesOf(item)) {
        std::array<std::uint8_t, 12> stated {};
        if (type == fourCharacters("ispe") && contents.length >= stated.size()
            && bytes_->readAt(contents.offset, stated) == stated.size())
            return sizeWithinLimits(bigEndian32(stated.data() + 4), bigEndian32(stated.data() + 8));
    }
    return {};
}

// A grid or an overlay states its size in front of everything else, and that is the one that memory
// is taken for.
std::optional<PixelSize> HeifIndex::canvasOf(Item const& item) const
{
    auto const data = tableAt({ item.data.offset, std::min<std::uint64_t>(item.data.length, 64) });
    NumberReader numbers(data);
    numbers.take(1);
    auto const unit = (numbers.take(1) & 1) != 0 ? 4U : 2U;
    numbers.take(item.type == fourCharacters("grid") ? 2 : 8);
    auto const width = numbers.take32(unit);
    auto const height = numbers.take32(unit);
    return numbers.hasFailed() ? std::nullopt : sizeWithinLimits(width, height);
}

PixelSize HeifIndex::croppedSize(PixelSize size, ByteRange clap) const
{
    auto const bytes = tableAt(clap);
    NumberReader numbers(bytes);
    std::array<double, 8> values {};
    for (auto& value : values)
        value = static_cast<std::int32_t>(numbers.take32());
    auto const [width, widthUnit, height, heightUnit, x, xUnit, y, yUnit] = values;
    if (numbers.hasFailed() || widthUnit == 0 || heightUnit == 0 || xUnit == 0 || yUnit == 0)
        return size;
    return { croppedSide(size.width, { width, widthUnit, x, xUnit }),
        croppedSide(size.height, { height, heightUnit, y, yUnit }) };
}

// The order of the properties is the order of the steps, wherever the size stands among them.
std::optional<PixelSize> HeifIndex::uprightSizeOf(ItemId item) const
{
    auto size = codedSizeOf(item);
    if (!size)
        return {};
    for (auto const& [type, contents] : propertiesOf(item)) {
        std::array<std::uint8_t, 1> quarters {};
        if (type == fourCharacters("clap"))
            size = croppedSize(*size, contents);
        else if (type == fourCharacters("irot") && bytes_->readAt(contents.offset, quarters) == 1
            && (quarters[0] & 1) != 0)
            size = size->turned();
    }
    if (size->width <= 0 || size->height <= 0)
        return {};
    return size;
}

PixelSize HeifIndex::unturnedSize() const
{
    auto size = this->size();
    for (auto const& [type, contents] : propertiesOf(primary_)) {
        std::array<std::uint8_t, 1> quarters {};
        if (type == fourCharacters("irot") && bytes_->readAt(contents.offset, quarters) == 1
            && (quarters[0] & 1) != 0)
            size = size.turned();
    }
    return size;
}

std::optional<int> HeifIndex::orientation() const
{
    constexpr std::array byQuarters { 1, 8, 3, 6 }; // anticlockwise
    int orientation = 1;
    for (auto const& [type, contents] : propertiesOf(primary_)) {
        std::array<std::uint8_t, 1> quarters {};
        if (type == fourCharacters("clap") || type == fourCharacters("imir"))
            return {};
        if (type == fourCharacters("irot") && bytes_->readAt(contents.offset, quarters) == 1)
            orientation = byQuarters[quarters[0] & 3];
    }
    return orientation;
}

bool HeifIndex::isDeep() const
{
    auto items = partsOf(primary_);
    items.push_back(primary_);
    return std::ranges::any_of(items, [&](ItemId item) {
        return std::ranges::any_of(propertiesOf(item), [&](IsoBox const& property) {
            auto const start = bytesAt(*bytes_, property.contents.offset,
                static_cast<std::size_t>(std::min<std::uint64_t>(property.contents.length, 18)));
            if (property.type == fourCharacters("pixi"))
                return start.size() > 5 && start[5] > 8;
            if (property.type == fourCharacters("av1C"))
                return start.size() > 2 && (start[2] & 0x40) != 0;
            return property.type == fourCharacters("hvcC") && start.size() > 17
                && (start[17] & 7) != 0;
        });
    });
}

// Whether `item` is the transparency of another; depths and gain maps are never decoded.
bool HeifIndex::isAlpha(ItemId item) const
{
    return std::ranges::any_of(propertiesOf(item), [&](IsoBox const& property) {
        if (property.type != fourCharacters("auxC"))
            return false;
        auto const kind = bytesAt(*bytes_, property.contents.offset + 4, 48);
        return startsWith(kind, "urn:mpeg:mpegB:cicp:systems:auxiliary:alpha")
            || startsWith(kind, "urn:mpeg:hevc:2015:auxid:1")
            || startsWith(kind, "urn:mpeg:avc:2015:auxid:1");
    });
}

// Parts are what a decoder goes on to when it is asked for a picture: those that it is put
// together from, and its transparency.
void HeifIndex::findParts()
{
    for (auto const& reference : references_) {
        if (reference.type == fourCharacters("dimg")) {
            auto& parts = parts_[reference.from];
            parts.insert(parts.end(), reference.to.begin(), reference.to.end());
        } else if (reference.type == fourCharacters("auxl") && isAlpha(reference.from)) {
            for (auto const whole : reference.to)
                parts_[whole].push_back(reference.from);
        }
    }
}

std::vector<HeifIndex::ItemId> HeifIndex::partsOf(ItemId item) const
{
    auto const found = parts_.find(item);
    return found != parts_.end() ? found->second : std::vector<ItemId> {};
}

// While an item is being looked at it stands in `known` without a cost, so a circle ends there.
std::optional<HeifIndex::Cost> HeifIndex::costOf(ItemId item, int depth, Costs& known) const
{
    if (auto const seen = known.find(item); seen != known.end())
        return seen->second;
    known[item] = std::nullopt;
    auto const size = codedSizeOf(item);
    if (!size || depth == 0)
        return {};
    Cost cost { std::int64_t { size->width } * size->height, 1 };
    for (auto const part : partsOf(item)) {
        auto const partCost = costOf(part, depth - 1, known);
        if (!partCost)
            return {};
        cost.pixels += partCost->pixels;
        cost.pictures += partCost->pictures;
        if (cost.pixels > 4 * DecodeLimits::pixels || cost.pictures > DecodeLimits::tiles)
            return {};
    }
    known[item] = cost;
    return cost;
}

std::optional<std::int64_t> HeifIndex::decodedPixels(ItemId item) const
{
    Costs known;
    auto const cost = costOf(item, DecodeLimits::nestedItems, known);
    return cost ? std::optional(cost->pixels) : std::nullopt;
}

std::vector<HeifIndex::Thumbnail> HeifIndex::thumbnails() const
{
    std::vector<Thumbnail> found;
    for (auto const& reference : references_) {
        if (reference.type != fourCharacters("thmb")
            || std::ranges::find(reference.to, primary_) == reference.to.end())
            continue;
        auto const size = uprightSizeOf(reference.from);
        if (size && reference.from != primary_ && decodedPixels(reference.from))
            found.push_back({ reference.from, *size });
    }
    std::ranges::stable_sort(
        found, {}, [](Thumbnail const& thumbnail) { return thumbnail.size.longestSide(); });
    return found;
}

std::map<HeifIndex::ItemId, HeifIndex::Item> HeifIndex::ownPictures() const
{
    auto own = items_;
    std::erase_if(own,
        [](auto const& entry) { return entry.second.isHidden || !isImage(entry.second.type); });
    for (auto const& reference : references_) {
        if (reference.type == fourCharacters("dimg"))
            for (auto const part : reference.to)
                own.erase(part);
        if (reference.type == fourCharacters("thmb") || reference.type == fourCharacters("auxl"))
            own.erase(reference.from);
    }
    return own;
}

std::size_t HeifIndex::pictures() const
{
    return std::max({ std::size_t { 1 }, ownPictures().size(), sequenceFrames() });
}

bool HeifIndex::isCut() const
{
    return std::ranges::any_of(ownPictures(), [](auto const& entry) { return entry.second.isCut; });
}

// Frames are counted where the first track lists their lengths.
std::size_t HeifIndex::sequenceFrames() const
{
    std::optional<IsoBox> box = IsoBox { 0, { 0, bytes_->size() } };
    for (auto const* name : { "moov", "trak", "mdia", "minf", "stbl", "stsz" }) {
        char type[5] = {};
        std::copy_n(name, 4, type);
        box = findBox(*bytes_, box->contents, fourCharacters(type));
        if (!box)
            return 0;
    }
    auto const start = bytesAt(*bytes_, box->contents.offset, 12);
    if (start.size() < 12)
        return 0;
    return std::min<std::size_t>(bigEndian32(start.data() + 8), DecodeLimits::frames);
}

std::optional<IsoBox> HeifIndex::colorProperty(bool isProfile) const
{
    // Where the whole says nothing its parts may.
    std::vector<ItemId> items { primary_ };
    auto const parts = partsOf(primary_);
    if (!parts.empty())
        items.push_back(parts.front());
    for (auto const item : items) {
        for (auto const& property : propertiesOf(item)) {
            std::array<std::uint8_t, 4> kind {};
            if (property.type != fourCharacters("colr")
                || bytes_->readAt(property.contents.offset, kind) != kind.size())
                continue;
            auto const isIcc = startsWith(kind, "prof") || startsWith(kind, "rICC");
            if (isProfile ? isIcc : startsWith(kind, "nclx"))
                return property;
        }
    }
    return {};
}

std::optional<ByteRange> HeifIndex::profile() const
{
    auto const property = colorProperty(true);
    return property ? std::optional(rangeAfter(property->contents, 4)) : std::nullopt;
}

std::optional<HeifIndex::CodePoints> HeifIndex::codePoints() const
{
    auto const property = colorProperty(false);
    if (!property)
        return {};
    auto const bytes = tableAt(property->contents);
    NumberReader numbers(bytes);
    numbers.take(4);
    auto const primaries = static_cast<int>(numbers.take(2));
    auto const transfer = static_cast<int>(numbers.take(2));
    return numbers.hasFailed() ? std::nullopt : std::optional(CodePoints { primaries, transfer });
}

std::vector<HeifIndex::Patch> HeifIndex::patchesFor(ItemId item) const
{
    std::set<ItemId> kept;
    std::vector<ItemId> open { item };
    while (!open.empty()) {
        auto const next = open.back();
        open.pop_back();
        if (!kept.insert(next).second)
            continue;
        auto const parts = partsOf(next);
        open.insert(open.end(), parts.begin(), parts.end());
    }
    constexpr std::array<std::uint8_t, 8> nothing { 'n', 'o', 'n', 'e' };
    std::vector<Patch> patches;
    for (auto const& [id, found] : items_) {
        if (kept.contains(id))
            continue;
        patches.push_back({ found.typeOffset, nothing, 4 });
        for (auto const& place : found.lengthPlaces)
            patches.push_back({ place.offset, {}, static_cast<std::size_t>(place.length) });
    }
    for (auto const& reference : references_) {
        auto const isPart = reference.type == fourCharacters("dimg")
            || reference.type == fourCharacters("auxl") || reference.type == fourCharacters("prem");
        if (!isPart || !kept.contains(reference.from))
            patches.push_back({ reference.typeOffset, nothing, 4 });
    }
    Patch primary { primaryPlace_.offset, {}, static_cast<std::size_t>(primaryPlace_.length) };
    for (std::size_t i = 0; i < primary.length; ++i)
        primary.bytes[i] = static_cast<std::uint8_t>(item >> 8 * (primary.length - 1 - i));
    patches.push_back(primary);
    std::ranges::sort(patches, {}, &Patch::offset);
    return patches;
}

// Where the items lie that describe the primary picture.
std::vector<ByteRange> HeifIndex::descriptions(std::uint32_t type) const
{
    std::vector<ByteRange> found;
    for (auto const& reference : references_) {
        auto const* item = find(reference.from);
        if (reference.type == fourCharacters("cdsc") && item != nullptr && item->type == type
            && std::ranges::find(reference.to, primary_) != reference.to.end())
            found.push_back(item->data);
    }
    return found;
}

std::optional<ByteRange> HeifIndex::exif() const
{
    auto const blocks = descriptions(fourCharacters("Exif"));
    if (blocks.empty() || blocks.front().length < 4)
        return {};
    auto const start = bytesAt(*bytes_, blocks.front().offset, 4);
    if (start.size() < 4)
        return {};
    // The first number says how far behind it the TIFF header stands.
    return rangeAfter(blocks.front(), std::uint64_t { 4 } + bigEndian32(start.data()));
}

std::vector<ByteRange> HeifIndex::texts() const
{
    return descriptions(fourCharacters("mime"));
}

} // namespace pixelhain
