#pragma once

#include "e2e/Desktop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <grp.h>
#include <unistd.h>

namespace Quillory {

// A Wayland session of an ordinary user, in a window of the display that DISPLAY names, whose keys and pointer it has:
// compositor, X server for X programs, session bus, and a terminal that writes down the lines typed into it.
class Sway {
public:
    struct Window {
        QString application; // its id, or the class of an X program
        QString title;
        bool isFocused = false;
        bool isFloating = false;
        QRect frame;
    };

    static constexpr auto terminal = u"foot";

    // `configuration` is added to the compositor's. Returns when the terminal has the keyboard.
    void start(QByteArray const& configuration)
    {
        folder.write("config", "xwayland force\nexec env > env.part && mv env.part env\n" + configuration);
        folder.makeFolder("runtime");
        ASSERT_EQ(chmod(folder.at("runtime").constData(), 0700), 0);
        auto const owner = isRoot() ? u"nobody:nogroup"_s : QString::number(geteuid());
        ASSERT_EQ(QProcess::execute(u"chown"_s, { u"-R"_s, owner, folder.path() }), 0);
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.setWorkingDirectory(folder.path());
        m_process.setProcessEnvironment(environment());
        m_process.setChildProcessModifier(becomeOrdinaryUser);
        m_process.start(u"dbus-run-session"_s, { u"--"_s, u"sway"_s, u"--config"_s, folder.path("config") });
        ASSERT_TRUE(
            Desktop::eventually([&] { return folder.has("env") || m_process.state() == QProcess::NotRunning; }));
        for (auto const& line : folder.read("env").split('\n')) {
            if (line.startsWith("SWAYSOCK="))
                m_socket = QString::fromUtf8(line.mid(line.indexOf('=') + 1));
        }
        ASSERT_FALSE(m_socket.isEmpty()) << "there is no session";
        execute(u"foot sh -c 'exec cat > lines'"_s);
        ASSERT_TRUE(Desktop::eventually([&] { return focused() == terminal && folder.has("lines"); }));
    }
    ~Sway()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        tell(u"exit"_s);
        if (!m_process.waitForFinished())
            m_process.kill();
        m_process.waitForFinished();
    }

    // A command of the compositor's. As one that it executes when a key is bound to it.
    bool tell(QString const& command) const { return !ask({ u"--quiet"_s, command }).isNull(); }
    void execute(QString const& command) const { EXPECT_TRUE(tell(u"exec "_s + command)); }

    QList<Window> windows() const
    {
        QList<Window> windows;
        collect(QJsonDocument::fromJson(ask({ u"--type"_s, u"get_tree"_s })).object(), windows);
        return windows;
    }
    // The application whose window has the keyboard; empty where none has.
    QString focused() const
    {
        auto const all = windows();
        auto const found = std::ranges::find_if(all, &Window::isFocused);
        return found != all.end() ? found->application : QString();
    }

    // In pixels of the session's screen.
    void click(QPoint point) const
    {
        tell(u"seat - cursor set %1 %2"_s.arg(point.x()).arg(point.y()));
        tell(u"seat - cursor press button1"_s);
        tell(u"seat - cursor release button1"_s);
    }

    QByteArray typedLines() const { return folder.read("lines"); }

    TemporaryFolder const folder; // where it runs, and its home

private:
    static bool isRoot() { return geteuid() == 0; }

    // The compositor refuses to run as root.
    static void becomeOrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        if (isRoot() && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
            _exit(EXIT_FAILURE);
    }

    QProcessEnvironment environment() const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (auto const& name : { u"QT_QPA_PLATFORM"_s, u"XDG_CONFIG_HOME"_s })
            environment.remove(name);
        for (auto const& [name, value] :
            { std::pair { u"HOME"_s, folder.path() }, { u"XDG_RUNTIME_DIR"_s, folder.path("runtime") },
                { u"WLR_BACKENDS"_s, u"x11"_s }, { u"WLR_RENDERER"_s, u"pixman"_s }, { u"LC_ALL"_s, u"C.UTF-8"_s } })
            environment.insert(name, value);
        return environment;
    }

    // Null when it was refused.
    QByteArray ask(QStringList const& arguments) const
    {
        QProcess asking;
        asking.start(u"swaymsg"_s, QStringList { u"--raw"_s, u"--socket"_s, m_socket } + arguments);
        asking.waitForFinished();
        bool const isDone = asking.exitStatus() == QProcess::NormalExit && asking.exitCode() == 0;
        return isDone ? asking.readAllStandardOutput() + ' ' : QByteArray();
    }

    static void collect(QJsonObject const& node, QList<Window>& windows)
    {
        auto const type = node[u"type"].toString();
        auto const id = node[u"app_id"].toString(node[u"window_properties"][u"class"].toString());
        if (!id.isEmpty()) {
            auto const rect = node[u"rect"];
            windows.append({ id, node[u"name"].toString(), node[u"focused"].toBool(), type == u"floating_con",
                { rect[u"x"].toInt(), rect[u"y"].toInt(), rect[u"width"].toInt(), rect[u"height"].toInt() } });
        }
        for (auto const* const children : { "nodes", "floating_nodes" }) {
            for (auto const& child : node[QLatin1String(children)].toArray())
                collect(child.toObject(), windows);
        }
    }

    QString m_socket;
    QProcess m_process;
};

}
