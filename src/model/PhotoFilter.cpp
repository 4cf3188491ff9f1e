#include "model/PhotoFilter.h"
#include "base/Text.h"
#include "model/DiscardedPhotos.h"
#include "model/PhotoOrder.h"
#include "model/SelectionRules.h"
#include "ports/Background.h"
#include <utility>

namespace pixelhain {

namespace {

bool isSearch(ViewChoice const& choice)
{
    return !trimmedBlanks(choice.searchText).empty();
}

bool haveSameOrder(ViewChoice const& a, ViewChoice const& b)
{
    return a.sortKey == b.sortKey && a.ascending == b.ascending;
}

} // namespace

PhotoFilter::PhotoFilter(Background& background, MainLoop& loop, TextOrder const& order, Show show)
    : background_(background)
    , loop_(loop)
    , order_(order)
    , show_(std::move(show))
{
}

void PhotoFilter::choose(ViewChoice const& choice)
{
    task_ = Task();
    // A search that is taken back changes nothing.
    if (!list_->isQuick() && choice == shown_)
        return;
    if (list_->isQuick())
        deliver(choice, list_->visible(choice, order_));
    else if (whole_ && !isSearch(choice) && haveSameOrder(choice, shown_))
        deliver(choice, *std::exchange(whole_, std::nullopt));
    else
        deriveLater(choice);
}

bool PhotoFilter::willHide(FileUrl const& photo) const
{
    return task_ && !matchesFilter({ photo }, chosen_.searchText, order_);
}

void PhotoFilter::deriveLater(ViewChoice const& choice)
{
    chosen_ = choice;
    task_ = runThen(
        background_, loop_, Priority::userInteractive,
        [list = PhotoList::Reading(list_), choice, &order = order_] {
            return list->visible(choice, order);
        },
        [this](std::vector<PhotoItem> visible) {
            task_ = Task();
            deliver(chosen_, std::move(visible));
        });
}

void PhotoFilter::deliver(ViewChoice const& choice, std::vector<PhotoItem> visible)
{
    auto const before = std::exchange(shown_, choice);
    auto old = show_(std::move(visible), Scan::same);
    if (!isSearch(choice) || !haveSameOrder(choice, before))
        dropWhole();
    if (isSearch(choice) && !isSearch(before) && haveSameOrder(choice, before) && !list_->isQuick())
        whole_ = std::move(old);
    else
        discardPhotos(background_, std::move(old));
}

void PhotoFilter::dropWhole()
{
    if (whole_)
        discardPhotos(background_, *std::exchange(whole_, std::nullopt));
}

void PhotoFilter::replace(
    std::shared_ptr<PhotoList> list, ViewChoice const& choice, std::vector<PhotoItem> visible)
{
    task_ = Task();
    dropWhole();
    discardPhotos(background_, std::exchange(list_, std::move(list)));
    shown_ = choice;
    discardPhotos(background_, show_(std::move(visible), Scan::other));
}

void PhotoFilter::remove(UrlSet const& urls)
{
    if (list_->isBeingRead())
        discardPhotos(background_, std::exchange(list_, std::make_shared<PhotoList>(*list_)));
    list_->remove(membership(urls, list_->items()));
    if (whole_)
        removePhotos(*whole_, membership(urls, *whole_));
    if (task_)
        deriveLater(chosen_);
}

} // namespace pixelhain
