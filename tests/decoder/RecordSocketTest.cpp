#include "decoder/RecordSocket.h"
#include <array>
#include <cstring>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace pixelhain;

namespace {

struct Connection {
    RecordSocket program;
    RecordSocket worker;

    static Connection make()
    {
        auto ends = RecordSocket::pair();
        REQUIRE(ends);
        return { std::move(ends->first), RecordSocket(std::move(ends->second)) };
    }
};

int openDescriptors()
{
    int count = 0;
    for (int number = 0; number < 256; ++number)
        count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

// More than the protocol has room for.
void sendDescriptors(RecordSocket const& socket, std::size_t count)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(16 * sizeof(int))> control {};
    char byte = 'x';
    iovec part { &byte, 1 };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(count * sizeof(int));
    auto* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(count * sizeof(int));
    std::array<int, 16> numbers {};
    std::memcpy(CMSG_DATA(header), numbers.data(), count * sizeof(int));
    REQUIRE(::sendmsg(socket.descriptor(), &message, 0) == 1);
}

bool isSameFile(int a, int b)
{
    struct stat left {
    }, right {};
    return ::fstat(a, &left) == 0 && ::fstat(b, &right) == 0 && left.st_ino == right.st_ino
        && left.st_dev == right.st_dev;
}

} // namespace

TEST_CASE("a record and its descriptors arrive together")
{
    auto const connection = Connection::make();
    DecoderRequest request;
    request.id = 99;
    Descriptor const file(::open("/dev/null", O_RDONLY));
    Descriptor const other(::open("/dev/zero", O_RDONLY));
    std::array const both { file.get(), other.get() };
    REQUIRE(connection.program.send(request, both));
    auto received = ReceivedRecord::withDescriptors(connection.worker);
    CHECK_FALSE(received.isEnd());
    CHECK(received.message().bytes.size() == sizeof request);
    CHECK(received.message().descriptors == 2);
    CHECK_FALSE(received.message().isCut);
    auto const first = received.takeDescriptor(0);
    auto const second = received.takeDescriptor(1);
    CHECK(isSameFile(first.get(), file.get()));
    CHECK(isSameFile(second.get(), other.get()));
    CHECK((::fcntl(first.get(), F_GETFD) & FD_CLOEXEC) != 0);
}

TEST_CASE("descriptors that nobody takes, or that are too many, are closed")
{
    auto const connection = Connection::make();
    auto const before = openDescriptors();
    for (std::size_t const count : { 1U, 2U, 3U, 16U }) {
        CAPTURE(count);
        sendDescriptors(connection.program, count);
        {
            auto const received = ReceivedRecord::withDescriptors(connection.worker);
            CHECK(received.message().isCut == (count > 2));
        }
        CHECK(openDescriptors() == before);
    }
}

TEST_CASE("the program takes no descriptors from a worker")
{
    auto const connection = Connection::make();
    auto const before = openDescriptors();
    sendDescriptors(connection.worker, 2);
    auto const received = ReceivedRecord::bytesOnly(connection.program);
    CHECK(received.message().isCut);
    CHECK(received.message().descriptors == 0);
    CHECK(openDescriptors() == before);
}

TEST_CASE("a message longer than any record shows as one")
{
    auto const connection = Connection::make();
    std::array<std::byte, 4096> garbage {};
    REQUIRE(connection.worker.send(garbage));
    auto const received = ReceivedRecord::bytesOnly(connection.program);
    CHECK_FALSE(received.isEnd());
    CHECK(received.message().isCut);
}

TEST_CASE("a closed end shows as the end, and takes no more")
{
    auto connection = Connection::make();
    {
        auto const gone = std::move(connection.worker);
    }
    CHECK(ReceivedRecord::bytesOnly(connection.program).isEnd());
    CHECK_FALSE(connection.program.send(DecoderRequest {}));
}

TEST_CASE("sending never waits for an end that does not read")
{
    auto const connection = Connection::make();
    int sent = 0;
    while (sent < 1'000'000 && connection.program.send(DecoderRequest {}))
        ++sent;
    CHECK(sent > 0);
    CHECK(sent < 1'000'000);
}
