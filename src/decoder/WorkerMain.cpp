#include "decoder/WorkerMain.h"
#include "codecs/ImageCodecs.h"
#include "decoder/Lockdown.h"
#include <charconv>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace pixelhain {

namespace {

template <typename Number>
std::optional<Number> numberAfter(
    std::string_view option, std::span<char* const> arguments, std::size_t place)
{
    if (std::string_view(arguments[place]) != option)
        return std::nullopt;
    std::string_view const text(arguments[place + 1]);
    Number number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

struct Orders {
    std::uint64_t memory = 0;
    pid_t parent = 0;
};

std::optional<Orders> ordersIn(std::span<char* const> arguments)
{
    if (arguments.size() != 5)
        return std::nullopt;
    auto const memory = numberAfter<std::uint64_t>("--memory", arguments, 1);
    auto const parent = numberAfter<pid_t>("--parent", arguments, 3);
    if (!memory || !parent)
        return std::nullopt;
    return Orders { *memory, *parent };
}

// What opens files when it is used for the first time has to be used while that is possible.
void warmUp()
{
    ::tzset(); // a library that converts times reads the zone
    warmUpCodecs();
}

// Pages that a picture took stay for the next one: getting new ones from the kernel takes as long
// as decoding a small picture. A worker without work gives them back.
void keepPages()
{
    constexpr int kept = 64 << 20;
    constexpr int ownMapping = 16 << 20; // beyond this a block comes from the kernel and goes back
    ::mallopt(M_TRIM_THRESHOLD, kept);
    ::mallopt(M_MMAP_THRESHOLD, ownMapping);
}

bool isSocket(int descriptor)
{
    struct stat info { };
    return ::fstat(descriptor, &info) == 0 && S_ISSOCK(info.st_mode);
}

} // namespace

int runWorker(std::span<char* const> arguments, Worker::Opener const& opener,
    AnimationServer::Opener const& animations)
{
    auto const orders = ordersIn(arguments);
    if (!orders || !isSocket(WorkerDescriptors::socket)) {
        std::fputs("This program decodes pictures for pixelhain and is started by it.\n", stderr);
        return 2;
    }
    // A program that was killed at once may have asked for something already.
    if (!bindToParent(orders->parent))
        return 1;
    WritableSpace space(WorkerDescriptors::space, ownSpaceBytes);
    ::close(WorkerDescriptors::space);
    if (!space)
        return 1;
    keepPages();
    warmUp();
    auto const lockdown = lockDown({ orders->memory });
    // Half of the address space is for code, the picture that comes out, and threads' stacks.
    Worker worker(RecordSocket(Descriptor(WorkerDescriptors::socket)), std::move(space), opener,
        orders->memory / 2, animations);
    worker.run(lockdown.holds);
    return 0;
}

} // namespace pixelhain
