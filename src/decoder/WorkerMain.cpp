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

std::optional<std::uint64_t> memoryIn(std::span<char* const> arguments)
{
    if (arguments.size() != 3 || std::string_view(arguments[1]) != "--memory")
        return std::nullopt;
    std::string_view const text(arguments[2]);
    std::uint64_t bytes = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), bytes);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return bytes;
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
    auto const memory = memoryIn(arguments);
    if (!memory || !isSocket(WorkerDescriptors::socket)) {
        std::fputs("This program decodes pictures for pixelhain and is started by it.\n", stderr);
        return 2;
    }
    WritableSpace space(WorkerDescriptors::space, ownSpaceBytes);
    ::close(WorkerDescriptors::space);
    if (!space)
        return 1;
    keepPages();
    warmUp();
    auto const lockdown = lockDown({ *memory });
    // Half of the address space is for code, the picture that comes out, and threads' stacks.
    Worker worker(RecordSocket(Descriptor(WorkerDescriptors::socket)), std::move(space), opener,
        *memory / 2, animations);
    worker.run(lockdown.holds);
    return 0;
}

} // namespace pixelhain
