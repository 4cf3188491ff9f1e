// The decoder program with the codec that goes wrong on demand.
#include "decoder/WorkerMain.h"
#include "support/FaultCodec.h"
#include <cstring>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace pixelhain;

// Stands in for the C library's: a lie is only told well by who knows what was asked.
extern "C" ssize_t recvmsg(int socket, msghdr* message, int flags)
{
    auto const got = ::syscall(SYS_recvmsg, socket, message, flags);
    if (got == ssize_t { sizeof(DecoderRequest) } && message->msg_iovlen == 1)
        std::memcpy(&faultChannel().asked, message->msg_iov->iov_base, sizeof(DecoderRequest));
    return got;
}

int main(int count, char** words)
{
    faultChannel().socket = WorkerDescriptors::socket;
    auto const arguments = std::span<char* const>(words, static_cast<std::size_t>(count));
    ::_exit(runWorker(arguments, openWithFaults, openAnimationWithFaults));
}
