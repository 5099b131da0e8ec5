#include "AppDelegate.h"
#include "OrderlyEnd.h"
#include "TerminationSignals.h"
#include "UserTimes.h"

#include "platform/linux/files/InotifyFileEvents.h"
#include "platform/linux/files/JsonUserDefaults.h"
#include "platform/linux/files/PathBookmarks.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/freedesktop/AtSpiAnnouncements.h"
#include "platform/linux/freedesktop/BusApplicationInstance.h"
#include "platform/linux/freedesktop/DesktopFileOpener.h"
#include "platform/linux/freedesktop/LogindSessionEvents.h"
#include "platform/linux/qt/QtClipboard.h"
#include "platform/linux/qt/QtExecutor.h"
#include "platform/linux/qt/QtLocalKeyEvents.h"
#include "platform/linux/qt/QtMenuTracking.h"
#include "platform/linux/qt/QtOpenPanels.h"
#include "platform/linux/qt/QtPictureDecoder.h"
#include "platform/linux/qt/QtScreens.h"
#include "platform/linux/x11/VirtualKeys.h"
#include "platform/linux/x11/X11Clock.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11InputPermission.h"
#include "platform/linux/x11/X11KeyState.h"
#include "platform/linux/x11/X11ModifierEvents.h"
#include "platform/linux/x11/X11PanelWindow.h"
#include "platform/linux/x11/X11Workspace.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>

namespace {

// The panel talks to the window manager by X11, on Wayland through its X server. The choice is ours alone: programs that
// are started from here must not inherit it.
class WindowSystemChoice {
public:
    WindowSystemChoice() { setenv("QT_QPA_PLATFORM", "xcb", 0); }
    void forget() const
    {
        if (m_isOurs)
            unsetenv("QT_QPA_PLATFORM");
    }

private:
    bool m_isOurs = !qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
};

void configure(QApplication& application)
{
    QApplication::setApplicationName(QStringLiteral("quillory"));
    QApplication::setDesktopFileName(Quillory::BusApplicationInstance::name());
    application.setQuitOnLastWindowClosed(false);
}

void flushWindows(QApplication const& application)
{
    if (auto* const x11 = application.nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(x11->connection());
}

bool isOwnWindow(std::uint32_t number)
{
    auto const isIt = [&](QWindow const* window) { return window->handle() && window->winId() == number; };
    return std::ranges::any_of(QGuiApplication::topLevelWindows(), isIt);
}

Quillory::ApplicationInstance::Wish wish()
{
    using enum Quillory::ApplicationInstance::Wish;
    return QCoreApplication::arguments().contains(QLatin1StringView("--toggle")) ? toggle : open;
}

// Installed or built, the program finds what it brings along from where it stands itself.
QString startersFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/quillory/Starters"));
}

// How long the end waits for a load or an installation that runs.
constexpr std::chrono::milliseconds endPatience { 100 };

int fail(QString const& sentence)
{
    std::cerr << "quillory: " << sentence.toStdString() << '\n';
    return EXIT_FAILURE;
}

}

int main(int argc, char* argv[])
{
    using namespace Quillory;

    WindowSystemChoice const choice;
    // A sentence instead of the toolkit's own end, which is an abort.
    if (auto const probe = X11Connection::open(); !probe)
        return fail(probe.error());
    TerminationSignals::block(); // before anything starts a thread
    auto const start = BusApplicationInstance::Start::ofThisProcess();
    QApplication application(argc, argv);
    choice.forget();
    configure(application);
    BusApplicationInstance instance(QDBusConnection::sessionBus(), start);
    if (instance.start(wish()) == ApplicationInstance::Role::handedOver)
        return EXIT_SUCCESS;
    auto const connection = X11Connection::open();
    // Raw events pause on a connection that grabs keys.
    auto const listening = X11Connection::open();
    if (!connection || !listening)
        return fail((connection ? listening : connection).error());
    (*connection)->onLost = [] { QCoreApplication::exit(EXIT_FAILURE); };

    // Not quit(), which closes the windows as the user would.
    TerminationSignals const signals([] { QCoreApplication::exit(); });
    PosixFileSystem files;
    PathBookmarks bookmarks;
    QtPictureDecoder const pictures;
    QtExecutor executor;
    // Settings are written by a worker of their own: all others may wait for a drive that does not answer.
    QtExecutor settingsExecutor;
    JsonUserDefaults defaults(JsonUserDefaults::standardPath(), settingsExecutor);
    InotifyFileEvents events(executor);
    auto const flushOwnWindows = [&application] { flushWindows(application); };
    X11Clock clock;
    UserTimes const userTimes(clock);
    X11HotKeys hotKeys(**connection, clock);
    hotKeys.isOwnWindow = isOwnWindow;
    NotificationCenter notifications;
    QtMenuTracking const menuTracking(notifications);
    QtLocalKeyEvents localKeyEvents(
        [](std::uint32_t scanCode) { return VirtualKeys::virtualKeyCode(static_cast<std::uint8_t>(scanCode)); });
    X11Workspace workspace(**connection, clock, flushOwnWindows);
    X11InputPermission const permission(**listening);
    X11ModifierEvents modifierEvents(**listening, clock, permission);
    X11KeyState const keys(**listening);
    QtScreens screens;

    QtClipboard clipboard;
    AtSpiAnnouncements announcements;
    DesktopFileOpener fileOpener(QDBusConnection::sessionBus());
    QtOpenPanels openPanels;
    LogindSessionEvents session(QDBusConnection::systemBus());
    auto const grabbingAgain = session.observeDidWake([&hotKeys] { hotKeys.grabAgain(); });

    AppDelegate delegate({
        .library = { defaults, bookmarks, files, pictures, events, executor, clipboard, announcements, fileOpener,
            openPanels, workspace, startersFolder() },
        .hotKeys = hotKeys,
        .localKeyEvents = localKeyEvents,
        .notifications = notifications,
        .session = session,
        .modifierEvents = modifierEvents,
        .permission = permission,
        .keys = keys,
        .screens = screens,
        .makePanelWindow =
            [&](std::uint64_t window) {
                return std::make_unique<X11PanelWindow>(
                    **connection, static_cast<xcb_window_t>(window), flushOwnWindows);
            },
        .instance = instance,
        .noteUserTime =
            [&](std::optional<std::uint32_t> time) { clock.note(time ? *time : (*connection)->presentTime()); },
    });
    OrderlyEnd end([&] {
        delegate.applicationWillTerminate();
        defaults.flush();
    });
    delegate.applicationDidFinishLaunching();
    auto const result = QApplication::exec();
    end.run();
    instance.leave(); // once the settings are written, which the next process reads
    if (!executor.stopWorkers(endPatience))
        OrderlyEnd::leave(result);
    return result;
}
