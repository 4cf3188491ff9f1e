#include "model/PhotoFilter.h"
#include "base/Text.h"
#include "model/DiscardedPhotos.h"
#include "model/SelectionRules.h"
#include "ports/Background.h"
#include "ports/MainLoop.h"
#include <chrono>
#include <utility>

namespace pixelhain {

namespace {

using namespace std::chrono_literals;

constexpr auto retryDelay = 1s; // to take photos out of a list that is being read
constexpr auto activityDelay = 300ms; // shorter searches show nothing

bool isSearch(ViewChoice const& choice)
{
    return !trimmedBlanks(choice.searchText).empty();
}

bool haveSameOrder(ViewChoice const& a, ViewChoice const& b)
{
    return a.sortKey == b.sortKey && a.ascending == b.ascending;
}

std::vector<PhotoItem> visibleWithout(
    UrlSet const& gone, PhotoList& list, ViewChoice const& choice, TextOrder const& order)
{
    auto visible = list.visible(choice, order);
    if (!gone.empty())
        removePhotos(visible, membership(gone, visible));
    return visible;
}

} // namespace

PhotoFilter::PhotoFilter(Background& background, MainLoop& loop, TextOrder const& order, Show show,
    ShowActivity showActivity)
    : background_(background)
    , loop_(loop)
    , order_(order)
    , show_(std::move(show))
    , showActivity_(std::move(showActivity))
{
}

void PhotoFilter::choose(ViewChoice const& choice)
{
    if (choice.searchText != chosen_.searchText)
        waiting_.clear();
    task_ = Task();
    // A search that is taken back changes nothing.
    if (!list_->isQuick() && choice == shown_)
        return settle();
    if (!list_->canBeOrderedBy(choice.sortKey))
        deriveLater(choice);
    else if (list_->isQuick())
        deliver(choice, visibleWithout(gone_, *list_, choice, order_));
    else if (whole_ && !isSearch(choice) && haveSameOrder(choice, shown_))
        deliver(choice, *std::exchange(whole_, std::nullopt));
    else
        deriveLater(choice);
}

void PhotoFilter::expectSearch()
{
    isSearchExpected_ = true;
    makeReady();
}

void PhotoFilter::makeReady()
{
    if (isSearchExpected_ && !list_->isQuick())
        background_.run(Priority::userInitiated,
            [list = PhotoList::Reading(list_), &order = order_] { list->foldNames(order); });
}

void PhotoFilter::whenShown(Purpose purpose, Command command)
{
    if (isUnderWay())
        waiting_.push_back({ purpose, std::move(command) });
    else
        command();
}

void PhotoFilter::inTurn(Command command)
{
    if (!waiting_.empty())
        waiting_.push_back({ Purpose::marks, std::move(command) });
    else
        command();
}

bool PhotoFilter::takeBack(Purpose purpose)
{
    return std::erase_if(waiting_, [&](Waiting const& one) { return one.purpose == purpose; }) > 0;
}

// What was chosen last is shown.
void PhotoFilter::settle()
{
    activityTask_ = Task();
    showActivity_(false);
    for (auto const& one : std::exchange(waiting_, {}))
        one.command();
}

void PhotoFilter::deriveLater(ViewChoice const& choice)
{
    chosen_ = choice;
    if (!activityTask_)
        activityTask_ = loop_.after(activityDelay, [this] { showActivity_(true); });
    if (!list_->canBeOrderedBy(choice.sortKey)) {
        task_ = Task([] {}); // ends when the list is completed
        return;
    }
    task_ = runThen(
        background_, loop_, Priority::userInteractive,
        [list = PhotoList::Reading(list_), gone = gone_, choice, &order = order_] {
            return visibleWithout(gone, *list, choice, order);
        },
        [this](std::vector<PhotoItem> visible) {
            task_ = Task();
            takeOutGone();
            deliver(chosen_, std::move(visible));
        });
}

void PhotoFilter::deliver(ViewChoice const& choice, std::vector<PhotoItem> visible, Scan scan)
{
    auto const before = std::exchange(shown_, choice);
    auto old = show_(std::move(visible), scan);
    if (!isSearch(choice) || !haveSameOrder(choice, before))
        dropWhole();
    if (isSearch(choice) && !isSearch(before) && haveSameOrder(choice, before) && !list_->isQuick())
        whole_ = std::move(old);
    else
        discardPhotos(background_, std::move(old));
    settle();
}

void PhotoFilter::clear(ViewChoice const& choice)
{
    replace(std::make_shared<PhotoList>(), choice, {});
}

void PhotoFilter::dropWhole()
{
    if (whole_)
        discardPhotos(background_, *std::exchange(whole_, std::nullopt));
}

void PhotoFilter::replace(
    std::shared_ptr<PhotoList> list, ViewChoice const& choice, std::vector<PhotoItem> visible)
{
    waiting_.clear();
    task_ = Task();
    dropWhole();
    gone_.clear();
    discardPhotos(background_, std::exchange(list_, std::move(list)));
    makeReady();
    shown_ = choice;
    discardPhotos(background_, show_(std::move(visible), Scan::other));
    settle();
}

void PhotoFilter::complete(
    std::shared_ptr<PhotoList> list, ViewChoice const& choice, std::vector<PhotoItem> visible)
{
    gone_.clear();
    discardPhotos(background_, std::exchange(list_, std::move(list)));
    makeReady();
    if (!isUnderWay() && choice == shown_) {
        dropWhole();
        discardPhotos(background_, show_(std::move(visible), Scan::completed));
        return;
    }
    task_ = Task();
    deliver(choice, std::move(visible), Scan::other);
    dropWhole(); // of these nothing but the names is known
}

void PhotoFilter::remove(UrlSet const& urls)
{
    gone_.insert(urls.begin(), urls.end());
    takeOutGone();
    if (whole_)
        removePhotos(*whole_, membership(urls, *whole_));
    if (task_)
        deriveLater(chosen_);
}

// A list that is being read is not changed, and a copy of a very long one would take longer than a
// frame. Searches that nobody waits for any more do not tell when they end.
void PhotoFilter::takeOutGone()
{
    if (gone_.empty())
        return;
    if (list_->isBeingRead()) {
        takeOut_ = loop_.after(retryDelay, [this] { takeOutGone(); });
        return;
    }
    list_->remove(membership(gone_, list_->items()));
    gone_.clear();
}

} // namespace pixelhain
