#include "linux/worker/WorkerMain.h"

#include "linux/worker/Confinement.h"
#include "linux/worker/MemoryFile.h"
#include "linux/worker/WorkerProtocol.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

namespace Quillory {

namespace {

struct Request {
    std::vector<WorkerProtocol::Item> items;
    FileDescriptor bytes;
    FileDescriptor answers;
};

bool send(std::span<std::byte const> message)
{
    return ::send(WorkerProtocol::socket, message.data(), message.size(), MSG_NOSIGNAL)
        == static_cast<ssize_t>(message.size());
}

std::optional<Request> receive()
{
    std::array<std::byte, WorkerProtocol::mostItems * sizeof(WorkerProtocol::Item) + 1> message;
    std::array<int, 2> descriptors { -1, -1 };
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof descriptors)> control {};
    iovec part { message.data(), message.size() };
    msghdr received {};
    received.msg_iov = &part;
    received.msg_iovlen = 1;
    received.msg_control = control.data();
    received.msg_controllen = control.size();
    auto const size = recvmsg(WorkerProtocol::socket, &received, MSG_CMSG_CLOEXEC);
    auto const* const header = CMSG_FIRSTHDR(&received);
    if (size <= 0 || !header || header->cmsg_len != CMSG_LEN(sizeof descriptors))
        return std::nullopt;
    std::memcpy(descriptors.data(), CMSG_DATA(header), sizeof descriptors);
    auto items = WorkerProtocol::itemsOf(std::span(message).first(static_cast<std::size_t>(size)));
    if (!items)
        return std::nullopt;
    return Request { *std::move(items), FileDescriptor(descriptors[0]), FileDescriptor(descriptors[1]) };
}

// Writes answers into their memory file, few bytes together.
class AnswerWriter {
public:
    explicit AnswerWriter(int descriptor)
        : m_descriptor(descriptor)
    {
    }

    void add(std::span<std::byte const> bytes)
    {
        m_size += bytes.size();
        if (m_buffer.size() + bytes.size() <= bufferSize) {
            m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
            return;
        }
        flush();
        write(bytes);
    }

    // Ends an answer, and says how long it is.
    std::uint64_t finish()
    {
        auto const size = std::exchange(m_size, 0);
        static constexpr std::array<std::byte, WorkerProtocol::answerAlignment> padding {};
        add(std::span(padding).first(WorkerProtocol::aligned(size) - size));
        m_size = 0;
        return size;
    }

    void flush()
    {
        write(m_buffer);
        m_buffer.clear();
    }

private:
    static constexpr std::size_t bufferSize = std::size_t { 256 } << 10U;

    void write(std::span<std::byte const> bytes) const
    {
        while (!bytes.empty()) {
            auto const written = ::write(m_descriptor, bytes.data(), bytes.size());
            if (written <= 0)
                _exit(EXIT_FAILURE); // the answer is too long
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
    }

    int m_descriptor;
    std::vector<std::byte> m_buffer;
    std::uint64_t m_size = 0;
};

bool serve(Request const& request, Interpreter const& interpreter)
{
    auto const bytes = mapSealed(request.bytes.number());
    auto const pieces = bytes ? WorkerProtocol::piecesOf(request.items, bytes->bytes()) : std::nullopt;
    if (!pieces)
        return false;
    AnswerWriter writer(request.answers.number());
    std::vector<std::uint64_t> sizes;
    for (std::size_t index = 0; index < pieces->size(); ++index) {
        auto const& item = request.items[index];
        interpreter(item.operation, item.argument, (*pieces)[index],
            [&](std::span<std::byte const> answer) { writer.add(answer); });
        sizes.push_back(writer.finish());
    }
    writer.flush();
    return send(std::as_bytes(std::span(sizes)));
}

}

bool isWorkerStart(int argc, char const* const* argv)
{
    return argc == 2 && std::string_view(argv[1]) == "--worker";
}

int runWorker(std::function<Interpreter()> const& prepare)
{
    auto const interpreter = prepare();
    if (!confine(WorkerProtocol::socket, WorkerProtocol::answerLimit))
        return EXIT_FAILURE;
    auto isServing = send(std::as_bytes(std::span(&WorkerProtocol::workerIsReady, 1)));
    while (isServing) {
        auto const request = receive();
        isServing = request && serve(*request, interpreter);
    }
    _exit(EXIT_SUCCESS); // what libraries do at their end may be forbidden
}

}
