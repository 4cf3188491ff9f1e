#include "model/PhotoOrder.h"
#include "support/Desk.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <map>
#include <random>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// A person and other programs at work, at random. Every photo is known by its size, so that the
// drive can be asked at any time whether one was lost or overwritten.
class Turmoil {
public:
    explicit Turmoil(unsigned seed)
        : random_(seed)
    {
        for (char const* const folder : { "/b", "/b/sub", "/c", "/z" })
            desk_.files.addFolder(folder);
        for (int i = 0; i < 12; ++i)
            addPhoto();
        desk_.model().setRoot(FileUrl("/b"), AlsoSelect::yes);
        desk_.settle();
        // Some work takes so long that progress shows, and keys are pressed meanwhile.
        desk_.operations.during = [this] {
            if (chance(4))
                desk_.loop.advance(150ms);
            if (chance(8))
                pressKey();
            if (chance(20))
                desk_.model().trashTargets();
        };
    }

    void step()
    {
        switch (random_() % 15) {
        case 0:
        case 1:
        case 2:
            return pressKey();
        case 3:
            return click();
        case 4:
            return desk_.model().trashTargets();
        case 5:
            return desk_.model().undoTrash();
        case 6:
        case 7:
            return transfer();
        case 8:
            return changeView();
        case 9:
            return changeOutside();
        case 10:
            return desk_.model().reload();
        case 11:
            return showFolders();
        case 12:
            return breakThings();
        case 13:
            return desk_.loop.advance(50ms);
        default:
            return finishSomething();
        }
    }

    void settle()
    {
        desk_.settle();
        desk_.model().reload();
        desk_.settle();
    }

    void checkFields()
    {
        auto const& model = desk_.model();
        auto const inRange = [&](std::optional<std::size_t> const& index) {
            return !index || *index < model.items->size();
        };
        REQUIRE(inRange(*model.cursor));
        REQUIRE(inRange(*model.viewerIndex));
        REQUIRE(inRange(model.anchor()));
        REQUIRE(*model.canUndoTrash == !model.lastTrashed().empty());
        REQUIRE(model.items->size() <= model.allItems().size());
        for (std::size_t i = 1; i < model.items->size(); ++i)
            REQUIRE_FALSE(photoOrder((*model.items)[i], (*model.items)[i - 1], *model.sortKey,
                *model.ascending, desk_.textOrder));
        for (auto const& photo : desk_.model().actionTargets())
            REQUIRE(std::ranges::count(*model.items, photo, &PhotoItem::url) == 1);
    }

    // Each photo lies somewhere exactly once; copies lie there besides.
    void checkNothingLost()
    {
        std::map<std::int64_t, int> copies;
        for (auto const& [url, details] : desk_.files.everything())
            if (details.kind == EntryKind::file)
                ++copies[details.size];
        for (auto const size : photos_)
            REQUIRE(copies[size] >= 1);
    }

    // Once everything has ended and the folders were scanned again.
    void checkAtRest()
    {
        auto const& model = desk_.model();
        REQUIRE_FALSE(model.isBusyWithFiles());
        REQUIRE_FALSE(model.fileProgress->has_value());
        UrlSet known;
        for (auto const& item : model.allItems()) {
            REQUIRE(desk_.files.exists(item.url));
            known.insert(item.url);
        }
        for (auto const& url : *model.selection)
            REQUIRE(known.contains(url));
    }

    // Undo puts back the last batch: what of it still lies in the trash, where its place is free.
    void checkUndo()
    {
        desk_.operations.during = nullptr;
        desk_.operations.failing.clear();
        auto const batch = desk_.model().lastTrashed();
        auto before = desk_.files.everything();
        std::size_t expected = 0;
        for (auto const& photo : batch) {
            auto const found = before.find(photo.trashed);
            if (found == before.end() || before.contains(photo.original))
                continue;
            before.emplace(photo.original, found->second);
            before.erase(photo.trashed);
            ++expected;
        }
        desk_.model().undoTrash();
        desk_.settle();
        REQUIRE(desk_.files.everything() == before);
        if (!batch.empty())
            REQUIRE(desk_.status()
                == std::to_string(expected) + (expected == 1 ? " Foto" : " Fotos")
                    + " wiederhergestellt");
    }

private:
    bool chance(unsigned of) { return random_() % of == 0; }

    FileUrl somePlace()
    {
        static std::vector<char const*> const folders { "/b", "/b/sub", "/c", "/z" };
        return FileUrl(folders[random_() % folders.size()]);
    }

    std::string someName() { return std::to_string(random_() % 12) + ".jpg"; }

    void addPhoto()
    {
        auto const url = somePlace().child(someName());
        if (desk_.files.exists(url))
            return;
        photos_.push_back(++nextSize_);
        desk_.files.addFile(url, nextSize_, Timestamp(std::chrono::seconds(random_() % 5)));
    }

    void pressKey()
    {
        static std::vector<int> const codes { 36, 49, 53, 115, 119, 123, 124, 125, 126 };
        static std::vector<char const*> const characters { "x", "s", "i", "d", "+", "q" };
        if (chance(2))
            desk_.press(codes[random_() % codes.size()], chance(3));
        else if (chance(5))
            desk_.press({ .characters = "a", .command = true, .shift = chance(3) });
        else
            desk_.type(characters[random_() % characters.size()]);
    }

    void click()
    {
        desk_.model().click(random_() % 15, { .command = chance(2), .shift = chance(3) });
        if (chance(5))
            desk_.model().invertSelection();
        if (chance(2))
            desk_.model().closeViewer();
    }

    void transfer()
    {
        auto const asked = desk_.panels.requests.size();
        desk_.model().moveOrCopyTargets(chance(2) ? Transfer::move : Transfer::copy);
        if (desk_.panels.requests.size() > asked && !chance(4))
            desk_.panels.choose(somePlace());
    }

    void changeView()
    {
        desk_.model().setColumns(static_cast<int>(random_() % 6));
        switch (random_() % 4) {
        case 0:
            return desk_.model().setSearchText(chance(2) ? "" : "1");
        case 1:
            return desk_.model().setAscending(chance(2));
        case 2:
            return desk_.model().setIncludeSubfolders(chance(2));
        default:
            return desk_.model().setSortKey(chance(3) ? SortKey::date
                    : chance(2)                       ? SortKey::size
                                                      : SortKey::name);
        }
    }

    void showFolders()
    {
        if (chance(2))
            desk_.model().selectFolders({ somePlace(), somePlace() }, FocusGallery::yes);
    }

    // Another program adds a photo, moves one away, or is about to take a name.
    void changeOutside()
    {
        if (chance(2))
            return addPhoto();
        auto const place = somePlace().child(someName());
        if (chance(2)) {
            auto const away = FileUrl("/elsewhere").child(std::to_string(++moved_));
            if (desk_.files.duplicate(place, away))
                desk_.files.remove(place);
        } else {
            desk_.operations.takenLate.insert(place);
        }
    }

    void breakThings()
    {
        auto const place = somePlace().child(someName());
        if (chance(2))
            desk_.operations.failing.insert(place);
        else
            desk_.operations.failing.clear();
        if (chance(3))
            desk_.operations.stuck.insert(place);
    }

    void finishSomething()
    {
        if (auto const pending = desk_.background.pending(); pending > 0)
            desk_.finish(random_() % pending);
        else
            desk_.loop.settle();
    }

    std::mt19937 random_;
    Desk desk_;
    std::vector<std::int64_t> photos_;
    std::int64_t nextSize_ = 0;
    int moved_ = 0;
};

} // namespace

TEST_CASE("whatever is done in whatever order, no photo is lost and every field holds together")
{
    for (unsigned seed = 0; seed < 150; ++seed) {
        CAPTURE(seed);
        Turmoil turmoil(seed);
        for (int round = 0; round < 4; ++round) {
            CAPTURE(round);
            for (int i = 0; i < 40; ++i) {
                CAPTURE(i);
                turmoil.step();
                turmoil.checkFields();
                turmoil.checkNothingLost();
            }
            turmoil.settle();
            turmoil.checkFields();
            turmoil.checkNothingLost();
            turmoil.checkAtRest();
        }
        turmoil.checkUndo();
        turmoil.checkNothingLost();
    }
}
