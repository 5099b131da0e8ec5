#include "AppDelegate.h"
#include "TerminationSignals.h"

#include "platform/linux/files/InotifyFileEvents.h"
#include "platform/linux/files/JsonUserDefaults.h"
#include "platform/linux/files/PathBookmarks.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/freedesktop/AtSpiAnnouncements.h"
#include "platform/linux/freedesktop/DesktopFileOpener.h"
#include "platform/linux/qt/QtClipboard.h"
#include "platform/linux/qt/QtExecutor.h"
#include "platform/linux/qt/QtOpenPanels.h"
#include "platform/linux/x11/X11Clock.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11Workspace.h"

#include <QApplication>
#include <QDBusConnection>

#include <cstdlib>
#include <iostream>

namespace {

// The panel talks to the window manager by X11, on Wayland through its X server.
void chooseWindowSystem()
{
    setenv("QT_QPA_PLATFORM", "xcb", 0);
}

void configure(QApplication& application)
{
    QApplication::setApplicationName(QStringLiteral("quillory"));
    QApplication::setDesktopFileName(QStringLiteral("quillory"));
    application.setQuitOnLastWindowClosed(false);
}

void flushWindows(QApplication const& application)
{
    if (auto* const x11 = application.nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(x11->connection());
}

int fail(QString const& sentence)
{
    std::cerr << "quillory: " << sentence.toStdString() << '\n';
    return EXIT_FAILURE;
}

}

int main(int argc, char* argv[])
{
    using namespace Quillory;

    chooseWindowSystem();
    // A sentence instead of the toolkit's own end, which is an abort.
    if (auto const probe = X11Connection::open(); !probe)
        return fail(probe.error());
    TerminationSignals::block(); // before anything starts a thread
    QApplication application(argc, argv);
    configure(application);
    auto const connection = X11Connection::open();
    if (!connection)
        return fail(connection.error());

    TerminationSignals const signals([] { QCoreApplication::quit(); });
    PosixFileSystem files;
    PathBookmarks bookmarks;
    QtExecutor executor;
    JsonUserDefaults defaults(JsonUserDefaults::standardPath(), executor);
    InotifyFileEvents events(executor);
    X11Clock clock;
    X11HotKeys hotKeys(**connection, clock);
    X11Workspace workspace(**connection, clock, [&application] { flushWindows(application); });

    QtClipboard clipboard;
    AtSpiAnnouncements announcements;
    DesktopFileOpener fileOpener(QDBusConnection::sessionBus());
    QtOpenPanels openPanels;

    AppDelegate delegate(
        { defaults, bookmarks, files, events, executor, clipboard, announcements, fileOpener, openPanels, workspace },
        hotKeys, workspace);
    delegate.applicationDidFinishLaunching();
    auto const result = QApplication::exec();
    delegate.applicationWillTerminate();
    return result;
}
