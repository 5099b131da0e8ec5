#include "e2e/ReaderOnADesktop.h"

#include <QDir>

#include <csignal>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Quillory;
using namespace Qt::StringLiterals;

namespace {

// A display that can be taken away, without a window manager.
class OwnDisplay {
public:
    OwnDisplay()
    {
        m_server.start(u"Xvfb"_s, { u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s });
        QByteArray number;
        while (!number.endsWith('\n')) {
            if (!m_server.waitForReadyRead())
                throw std::runtime_error("Xvfb does not start");
            number += m_server.readAllStandardOutput();
        }
        m_name = ':' + number.trimmed();
    }
    ~OwnDisplay() { take(); }
    OwnDisplay(OwnDisplay const&) = delete;
    OwnDisplay& operator=(OwnDisplay const&) = delete;

    QByteArray const& name() const { return m_name; }
    void take()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

private:
    QProcess m_server;
    QByteArray m_name;
};

// In which order a program lets its folder go and writes its settings, seen from outside.
class Order {
public:
    explicit Order(Program const& program)
        : m_folder(watch(program.folder(), IN_CLOSE_NOWRITE))
        , m_settings(watch(program.path(u"config/quillory"_s), IN_MOVED_TO))
    {
    }
    ~Order() { close(m_inotify); }
    Order(Order const&) = delete;
    Order& operator=(Order const&) = delete;

    // Since the last call.
    QStringList take() const
    {
        QStringList order;
        alignas(inotify_event) std::array<char, 65536> bytes {};
        auto const size = read(m_inotify, bytes.data(), bytes.size());
        for (auto at = ssize_t { 0 }; at < size;) {
            auto const& event = reinterpret_cast<inotify_event const&>(bytes[static_cast<std::size_t>(at)]);
            if (event.wd == m_settings)
                order.append(u"settings"_s);
            else if (event.wd == m_folder && event.len == 0)
                order.append(u"folder"_s);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return order;
    }

private:
    int watch(QString const& folder, std::uint32_t events) const
    {
        return inotify_add_watch(m_inotify, QFile::encodeName(folder).constData(), events);
    }

    int m_inotify = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    int m_folder;
    int m_settings;
};

class EndingTest : public testing::Test {
protected:
    static constexpr std::uint16_t keyQ = 12, keyRight = 124;
    using End = std::function<void(OwnDisplay&, Desktop&)>;

    // Changes the selection, which is written a quarter of a second later, and ends the program before that.
    QStringList orderOfAnEnd(End const& end, int exitCode)
    {
        OwnDisplay display;
        auto const usual = qgetenv("DISPLAY");
        qputenv("DISPLAY", display.name());
        Desktop desktop;
        qputenv("DISPLAY", usual);
        program.setDisplay(QString::fromLatin1(display.name()));
        program.start();
        EXPECT_TRUE(Desktop::eventually([&] { return desktop.isGrabbed(toggle); }));
        desktop.pressAndRelease(toggle);
        EXPECT_TRUE(Desktop::eventually([&] {
            desktop.pressAndRelease({ keyRight, 0 });
            return desktop.reader() && desktop.reader()->title.startsWith(u"Second"_s);
        }));
        Order const order(program);
        end(display, desktop);
        EXPECT_EQ(program.waitForEnd(), exitCode);
        EXPECT_EQ(program.storedSettings()[u"lastSheet"_s].toString(), u"b.md"_s);
        return order.take();
    }

    EventLoop loop;
    Program program;
};

TEST_F(EndingTest, However_it_ends_it_leaves_the_folder_and_then_writes_the_last_settings)
{
    program.save(u"a.md"_s, sheetOf("First"));
    program.save(u"b.md"_s, sheetOf("Second"));
    struct Case {
        char const* story;
        End end;
        int exitCode;
    };
    for (auto const& [story, end, exitCode] :
        std::initializer_list<Case> { { "display lost", [](OwnDisplay& display, Desktop&) { display.take(); }, 1 },
            { "SIGTERM", [&](OwnDisplay&, Desktop&) { kill(static_cast<pid_t>(program.process()), SIGTERM); }, 0 },
            { "Ctrl+Q",
                [](OwnDisplay&, Desktop& desktop) {
                    desktop.pressAndRelease({ keyQ, Shortcut::carbonModifiersOf(ModifierFlags::control) });
                },
                0 } }) {
        SCOPED_TRACE(story);
        QStringList const inOrder { u"folder"_s, u"settings"_s };
        QStringList order;
        // Where the settings were written before the end came, it proves nothing.
        for (int attempt = 0; attempt < 5 && order != inOrder; ++attempt)
            order = orderOfAnEnd(end, exitCode);
        EXPECT_EQ(order, inOrder) << order.join(u", "_s).toStdString();
    }
}

}
