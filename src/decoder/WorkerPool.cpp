#include "decoder/WorkerPool.h"
#include "decoder/Lockdown.h"
#include <algorithm>
#include <fstream>
#include <future>
#include <system_error>
#include <utility>

namespace pixelhain {

namespace {

// Looking a worker's memory up takes as long as the rest of a small request's way.
constexpr std::uint64_t requestsBetweenLooks = 8;

// One may be killed while it starts; when so many end in a row there is more to it.
constexpr int mostUnready = 3;

bool isSpent(WorkerProcess const& worker)
{
    return worker.requests >= WorkerLimits::requests
        || (worker.requests % requestsBetweenLooks == 0
            && worker.keptMemory() > WorkerLimits::keptMemory);
}

// What the kernel could give without taking it from other programs; 0 if it does not say.
std::uint64_t availableMemory()
{
    std::ifstream file("/proc/meminfo");
    std::uint64_t kilobytes = 0;
    for (std::string word; file >> word;)
        if (word == "MemAvailable:" && file >> kilobytes)
            return kilobytes * 1024;
    return 0;
}

} // namespace

WorkerPool::WorkerPool(Options options)
    : options_(std::move(options))
    , rate_(options_.rate)
{
    try {
        starter_ = std::make_unique<WorkerStarter>(options_.program, options_.niceness);
    } catch (std::system_error const& error) {
        failedToStart(error.code().message());
    }
}

WorkerPool::~WorkerPool()
{
    if (!starter_)
        return;
    std::vector<std::unique_ptr<WorkerProcess>> idle;
    {
        std::scoped_lock const guard(lock_);
        isClosing_ = true;
        idle.swap(idle_);
    }
    for (auto& worker : idle)
        starter_->bury(std::move(worker));
    starter_->stop();
}

void WorkerPool::prepare(std::size_t count)
{
    std::scoped_lock const guard(lock_);
    auto const present = this->present();
    for (auto i = present; i < std::min(count, options_.width); ++i)
        startOne();
}

std::unique_ptr<WorkerProcess> WorkerPool::take(int niceness)
{
    std::unique_lock guard(lock_);
    ++waiting_;
    std::unique_ptr<WorkerProcess> worker;
    for (;;) {
        if (taken_ < options_.width && (worker = pickIdle(niceness)))
            break;
        startMissing();
        if (isHopeless())
            break;
        if (auto const next = nextStart(); Clock::now() < next)
            changed_.wait_until(guard, next);
        else
            changed_.wait(guard);
    }
    --waiting_;
    if (worker) {
        ++taken_;
        if (hasAnswered_)
            keepSpare();
    }
    guard.unlock();
    if (worker)
        worker->lowerPriority(niceness);
    return worker;
}

// The one that has the asker's priority; else one whose can still be lowered; else any.
std::unique_ptr<WorkerProcess> WorkerPool::pickIdle(int niceness)
{
    auto const rank = [niceness](auto const& worker) {
        auto const over = worker->niceness() - niceness;
        return over == 0 ? 0 : over < 0 ? 1 : 2;
    };
    auto const best = std::ranges::min_element(idle_, {}, rank);
    if (best == idle_.end())
        return nullptr;
    auto worker = std::move(*best);
    idle_.erase(best);
    return worker;
}

void WorkerPool::giveBack(std::unique_ptr<WorkerProcess> worker)
{
    ++worker->requests;
    warnOnce(*worker);
    bool const wasSpent = isSpent(*worker);
    if (wasSpent)
        starter_->bury(std::move(worker));
    {
        std::scoped_lock const guard(lock_);
        --taken_;
        if (!wasSpent)
            idle_.insert(idle_.begin(), std::move(worker));
        hasAnswered_ = true;
        unready_ = 0;
        keepSpare();
    }
    changed_.notify_one();
}

void WorkerPool::bury(std::unique_ptr<WorkerProcess> worker)
{
    starter_->bury(std::move(worker));
    {
        std::scoped_lock const guard(lock_);
        --taken_;
        rate_.died(Clock::now());
        keepSpare();
    }
    changed_.notify_all();
}

void WorkerPool::buryUnready(std::unique_ptr<WorkerProcess> worker)
{
    starter_->bury(std::move(worker));
    {
        std::scoped_lock const guard(lock_);
        --taken_;
        if (++unready_ >= mostUnready)
            failedToStart("it ends as soon as it begins");
        else
            rate_.died(Clock::now());
    }
    changed_.notify_all();
}

std::size_t WorkerPool::present() const
{
    return taken_ + idle_.size() + starting_;
}

// Starts as many as the takers that wait will have.
void WorkerPool::startMissing()
{
    auto const wanted = std::min(options_.width, taken_ + waiting_);
    for (auto i = present(); i < wanted; ++i)
        startOne();
}

// Sees to it that one is ready that has done nothing yet: it can take any priority.
void WorkerPool::keepSpare()
{
    auto const isFresh = [](auto const& worker) { return worker->requests == 0; };
    if (starting_ == 0 && present() <= options_.width && std::ranges::none_of(idle_, isFresh))
        startOne();
}

void WorkerPool::startOne()
{
    if (!starter_ || Clock::now() < nextStart())
        return;
    ++starting_;
    starter_->start(options_.addressSpace,
        [this](WorkerProcess::Started result) { started(std::move(result)); });
}

void WorkerPool::started(WorkerProcess::Started result)
{
    {
        std::scoped_lock const guard(lock_);
        --starting_;
        auto* const worker = std::get_if<std::unique_ptr<WorkerProcess>>(&result);
        if (worker && isClosing_)
            starter_->bury(std::move(*worker));
        else if (worker)
            idle_.push_back(std::move(*worker));
        else
            failedToStart(std::get<Failure>(result).reason);
    }
    changed_.notify_all();
}

void WorkerPool::failedToStart(std::string const& reason)
{
    rate_.died(Clock::now());
    hopelessUntil_ = std::max(rate_.next(), Clock::now() + WorkerLimits::firstWait);
    if (!std::exchange(hasComplained_, true) && options_.complain)
        options_.complain(options_.program + ": " + reason);
}

void WorkerPool::warnOnce(WorkerProcess const& worker)
{
    auto const missing = missingHolds({ worker.holds.value_or(0) });
    if (missing.empty())
        return;
    {
        std::scoped_lock const guard(lock_);
        if (std::exchange(hasWarned_, true))
            return;
    }
    if (options_.warn)
        options_.warn(missing);
}

// When a worker may start; in the past if at once.
WorkerPool::Clock::time_point WorkerPool::nextStart() const
{
    return hopelessUntil_ ? std::max(rate_.next(), *hopelessUntil_) : rate_.next();
}

// Whether there is nobody to wait for.
bool WorkerPool::isHopeless() const
{
    return !starter_ || (hopelessUntil_ && Clock::now() < *hopelessUntil_ && present() == 0);
}

std::unique_ptr<WorkerProcess> WorkerPool::takeLarge()
{
    if (!starter_)
        return nullptr;
    {
        std::unique_lock guard(lock_);
        largeFreed_.wait(guard, [this] { return !isLargeTaken_; });
        isLargeTaken_ = true;
    }
    auto worker = startNow(WorkerLimits::forLargePictures(availableMemory()).addressSpace);
    if (!worker)
        buryLarge(nullptr);
    return worker;
}

// Waits for it; null if it cannot be started.
std::unique_ptr<WorkerProcess> WorkerPool::startNow(std::uint64_t addressSpace)
{
    // Held by both sides: the order may be dropped while somebody waits for it.
    auto const promise = std::make_shared<std::promise<WorkerProcess::Started>>();
    auto result = promise->get_future();
    starter_->start(addressSpace,
        [promise](WorkerProcess::Started started) { promise->set_value(std::move(started)); });
    auto started = result.get();
    if (auto* const worker = std::get_if<std::unique_ptr<WorkerProcess>>(&started))
        return std::move(*worker);
    return nullptr;
}

void WorkerPool::buryLarge(std::unique_ptr<WorkerProcess> worker)
{
    if (worker)
        starter_->bury(std::move(worker));
    {
        std::scoped_lock const guard(lock_);
        isLargeTaken_ = false;
    }
    largeFreed_.notify_one();
}

std::optional<std::unique_ptr<WorkerProcess>> WorkerPool::takeForPlay()
{
    if (!starter_)
        return nullptr;
    {
        std::scoped_lock const guard(lock_);
        if (playing_ >= mostPlaying)
            return std::nullopt;
        ++playing_;
        if (auto worker = pickFresh()) {
            keepSpare();
            return worker;
        }
    }
    auto worker = startNow(options_.addressSpace);
    if (!worker)
        buryPlaying(nullptr);
    return worker;
}

// One that nobody has taken down in its priority.
std::unique_ptr<WorkerProcess> WorkerPool::pickFresh()
{
    auto const isFresh = [](auto const& worker) { return worker->requests == 0; };
    auto const found = std::ranges::find_if(idle_, isFresh);
    if (found == idle_.end())
        return nullptr;
    auto worker = std::move(*found);
    idle_.erase(found);
    return worker;
}

void WorkerPool::buryPlaying(std::unique_ptr<WorkerProcess> worker)
{
    if (worker)
        starter_->bury(std::move(worker));
    std::scoped_lock const guard(lock_);
    --playing_;
}

} // namespace pixelhain
