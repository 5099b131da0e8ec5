#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11InputPermission.h"
#include "linux/x11/X11ModifierEvents.h"
#include "support/EventLoop.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <thread>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Quillory {
namespace {

// A way to the X server that DISPLAY names, on which whoever asks for the input extension asks for one that there is
// not: no server at hand can be started without it. Carries one connection.
class WayWithoutInputExtension {
public:
    WayWithoutInputExtension()
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        bool const isOpen = bind(m_listening, generic, size) == 0 && listen(m_listening, 1) == 0
            && getsockname(m_listening, generic, &size) == 0;
        EXPECT_TRUE(isOpen);
        constexpr int firstPort = 6000; // that of display 0
        qputenv("DISPLAY", "127.0.0.1:" + QByteArray::number(ntohs(address.sin_port) - firstPort));
        m_carrier = std::thread([this] { carry(); });
    }
    ~WayWithoutInputExtension()
    {
        m_carrier.join(); // ends with the connection
        close(m_listening);
        qputenv("DISPLAY", m_display);
    }
    WayWithoutInputExtension(WayWithoutInputExtension const&) = delete;
    WayWithoutInputExtension& operator=(WayWithoutInputExtension const&) = delete;

private:
    void carry() const
    {
        int const client = accept(m_listening, nullptr, nullptr);
        std::array<pollfd, 2> ends { { { client, POLLIN, 0 }, { m_toServer, POLLIN, 0 } } };
        std::array<char, 65536> bytes {};
        for (bool isOpen = true; isOpen;) {
            poll(ends.data(), ends.size(), -1);
            for (std::size_t from = 0; from < ends.size(); ++from) {
                if (!ends[from].revents)
                    continue;
                auto const size = read(ends[from].fd, bytes.data(), bytes.size());
                isOpen = isOpen && size > 0;
                if (from == 0 && size > 0)
                    misspell({ bytes.data(), static_cast<std::size_t>(size) });
                if (isOpen && write(ends[1 - from].fd, bytes.data(), static_cast<std::size_t>(size)) != size)
                    isOpen = false;
            }
        }
        close(client);
        close(m_toServer);
    }

    int connectToServer() const
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        auto const path = "/tmp/.X11-unix/X" + m_display.mid(1);
        std::ranges::copy(path, address.sun_path);
        int const server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::connect(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0) << path.toStdString();
        return server;
    }

    static void misspell(std::span<char> request)
    {
        constexpr std::string_view name = "XInputExtension";
        auto const found = std::ranges::search(request, name);
        if (!found.empty())
            found.front() = '-';
    }

    QByteArray m_display = qgetenv("DISPLAY");
    int m_listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int m_toServer = connectToServer();
    std::thread m_carrier;
};

TEST(X11InputPermission, Without_the_input_extension_nothing_can_be_listened_to_and_hot_keys_work)
{
    EventLoop const loop;
    auto const ordinary = X11Connection::open().value();
    EXPECT_TRUE(X11InputPermission(*ordinary).canListenToEvents());

    WayWithoutInputExtension const way;
    auto const connection = X11Connection::open().value();
    X11InputPermission const permission(*connection);
    EXPECT_FALSE(permission.canListenToEvents());
    X11Clock clock;
    X11ModifierEvents events(*connection, clock, permission);
    EXPECT_FALSE(events.observe([](auto const&) { }, [] { }).has_value());
    X11HotKeys hotKeys(*connection, clock);
    EXPECT_TRUE(hotKeys.probe(40, ModifierFlags::control | ModifierFlags::option).has_value());
}

}
}
