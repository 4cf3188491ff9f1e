#include "decoder/SpaceShelf.h"
#include <algorithm>
#include <numeric>
#include <utility>

namespace pixelhain {

namespace {

// One for each worker of the viewer: pictures leave its cache as others come.
constexpr std::size_t mostKept = 3;
// Three screens of 4096 × 4096 pixels. Spaces of whole photos beyond that are rarely wanted twice.
constexpr std::size_t mostKeptBytes = std::size_t { 192 } << 20U;
// A space much larger than asked for is left for the pictures that need it.
constexpr std::size_t mostWaste = 2;

} // namespace

SpaceShelf::SpaceShelf()
    : shelf_(std::make_shared<Shelf>())
{
}

std::unique_ptr<SpaceShelf::Space> SpaceShelf::take(std::size_t bytes, std::uint64_t worker)
{
    {
        std::scoped_lock const guard(shelf_->lock);
        auto const fits = [bytes, worker](auto const& space) {
            auto const size = space->memory.size();
            return space->worker == worker && size >= bytes && size / mostWaste <= bytes;
        };
        auto& spaces = shelf_->spaces;
        if (auto const found = std::ranges::find_if(spaces, fits); found != spaces.end()) {
            auto space = std::move(*found);
            spaces.erase(found);
            return space;
        }
    }
    auto made = SharedSpace::create(bytes);
    if (!made)
        return nullptr;
    return std::make_unique<Space>(Space { std::move(*made), worker });
}

void SpaceShelf::giveBack(std::unique_ptr<Space> space)
{
    put(*shelf_, std::move(space));
}

void SpaceShelf::put(Shelf& shelf, std::unique_ptr<Space> space)
{
    if (space->worker == noWorker || space->memory.size() > mostKeptBytes)
        return;
    std::vector<std::unique_ptr<Space>> dropped; // freed without the lock
    std::scoped_lock const guard(shelf.lock);
    auto& spaces = shelf.spaces;
    spaces.push_back(std::move(space));
    auto const bytes = [&spaces] {
        return std::accumulate(spaces.begin(), spaces.end(), std::size_t { 0 },
            [](std::size_t sum, auto const& each) { return sum + each->memory.size(); });
    };
    while (spaces.size() > mostKept || bytes() > mostKeptBytes) {
        dropped.push_back(std::move(spaces.front()));
        spaces.erase(spaces.begin());
    }
}

Bitmap SpaceShelf::wrap(std::unique_ptr<Space> space, Bitmap picture)
{
    // What a larger picture left behind this one must not stay as long as this one.
    space->memory.freeBehind(picture.cost());
    auto* const pixels = const_cast<std::byte*>(space->memory.data());
    picture.pixels = std::shared_ptr<std::byte>(
        pixels, [shelf = shelf_, held = std::shared_ptr(std::move(space))](std::byte*) mutable {
            put(*shelf, std::make_unique<Space>(std::move(*held)));
        });
    return picture;
}

} // namespace pixelhain
