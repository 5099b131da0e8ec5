#include "AppDelegate.h"
#include "KeysForDesktop.h"
#include "OrderlyEnd.h"
#include "Preparation.h"
#include "ProgramData.h"
#include "StartOptions.h"
#include "TerminationSignals.h"
#include "Updates.h"
#include "WaylandKeys.h"
#include "X11Desktop.h"

#include "app/sandbox/ServeAsWorker.h"
#include "linux/files/InotifyFileEvents.h"
#include "linux/files/JsonUserDefaults.h"
#include "linux/files/PathBookmarks.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/freedesktop/AtSpiAnnouncements.h"
#include "linux/freedesktop/AutostartEntry.h"
#include "linux/freedesktop/BusApplicationInstance.h"
#include "linux/freedesktop/DesktopFileOpener.h"
#include "linux/freedesktop/DesktopSettingsPrograms.h"
#include "linux/freedesktop/DesktopSystemShortcuts.h"
#include "linux/freedesktop/FlatpakSandbox.h"
#include "linux/freedesktop/LogindSessionEvents.h"
#include "linux/freedesktop/PortalAutostart.h"
#include "linux/freedesktop/PortalColorScheme.h"
#include "linux/freedesktop/PortalOpenPanels.h"
#include "linux/qt/QtAppearance.h"
#include "linux/qt/QtClipboard.h"
#include "linux/qt/QtExecutor.h"
#include "linux/qt/QtMenuTracking.h"
#include "linux/qt/QtOpenPanels.h"
#include "linux/tray/TrayBar.h"
#include "linux/worker/WorkerPool.h"
#include "updates/ReleaseVersionDisplay.h"
#include "words/InstalledWords.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>

#include <chrono>
#include <cstdlib>
#include <iostream>

namespace {

using namespace Quillory;

constexpr int misused = 2;

// How long the end waits for a load or an installation that runs.
constexpr std::chrono::milliseconds endPatience { 100 };

int fail(QString const& sentence, int exitCode = EXIT_FAILURE)
{
    std::cerr << "quillory: " << sentence.toStdString() << '\n';
    return exitCode;
}

void say(QStringList const& sentences)
{
    for (auto const& sentence : sentences)
        std::cout << sentence.toStdString() << '\n';
    std::cout.flush();
}

// A program that was started from a terminal must not keep the drive busy on which the terminal stood.
void leaveWorkingFolder()
{
    QDir::setCurrent(QDir::homePath());
}

int failUnanswered()
{
    return fail(StartOptions::tr("Quillory already runs but does not answer. End that process and start it again."));
}

// Passes the request on to an earlier process. Settings are changed only where there is none: it has them in memory.
ApplicationInstance::Role takePart(
    ApplicationInstance& instance, StartOptions const& options, ApplicationInstance::Answer answered)
{
    return instance.start(options.changeSettings()
            ? ApplicationInstance::Request { .wish = ApplicationInstance::Wish::none }
            : options.request,
        std::move(answered));
}

// The exit code of a start that can't serve since an earlier process is there; absent where this one serves.
std::optional<int> leaveToEarlierProcess(ApplicationInstance::Role role, StartOptions const& options, bool isRefused)
{
    if (role == ApplicationInstance::Role::unanswered)
        return failUnanswered();
    if (role != ApplicationInstance::Role::handedOver) {
        bool const isDone = options.request.wish == ApplicationInstance::Wish::peekEnd; // nobody peeks
        return isDone ? std::optional(EXIT_SUCCESS) : std::nullopt;
    }
    if (options.changeSettings())
        return fail(StartOptions::tr(
            "Quillory already runs and has its settings in memory. End it first, by Ctrl+Q in the reader."));
    return isRefused ? EXIT_FAILURE : EXIT_SUCCESS;
}

// `showInReader` is empty until there is a reader.
TrayBar::Operations trayOperations(X11Desktop& desktop, std::function<void(QString const&)> const& showInReader)
{
    return {
        .hasEmbeddingTray = [&] { return desktop.embeddingTray().isThere(); },
        .noteUserTime = [&](std::optional<std::uint32_t> time) { desktop.noteUserTime(time); },
        .log =
            [&](QString const& sentence) {
                fail(sentence);
                if (showInReader)
                    showInReader(sentence);
            },
    };
}

std::unique_ptr<Autostart> makeAutostart()
{
    if (isInFlatpakSandbox())
        return std::make_unique<PortalAutostart>(QDBusConnection::sessionBus());
    return std::make_unique<AutostartEntry>(AutostartEntry::Folders::standard(), ProgramData::command());
}

// Absent where the program grabs its keys.
std::unique_ptr<WaylandKeys> makeWaylandKeys(X11Desktop& desktop)
{
    if (desktop.session() == X11Session::native)
        return nullptr;
    return std::make_unique<WaylandKeys>(desktop.hotKeys(),
        PortalHotKeys::Operations {
            .symbolName = [&](std::uint16_t keyCode) { return desktop.keyboardLayout().symbolName(keyCode); },
            .noteUserTime = [&] { desktop.noteUserTime(std::nullopt); },
        });
}

// All that the program stands on, each after what it needs itself.
struct Adapters {
    explicit Adapters(X11Desktop& onDesktop)
        : desktop(onDesktop)
    {
    }

    HotKeys& hotKeys() const { return waylandKeys ? waylandKeys->hotKeys() : desktop.hotKeys(); }
    DesktopHotKeys* desktopHotKeys() const { return waylandKeys ? &waylandKeys->desktopHotKeys() : nullptr; }
    QStringList howToCall() const { return Quillory::howToCall(shortcuts, desktop.keyboardLayout(), desktopHotKeys()); }

    X11Desktop& desktop;
    PosixFileSystem files;
    PathBookmarks bookmarks;
    WorkerPool sandbox;
    QtExecutor executor;
    // Settings are written by a worker of their own: all others may wait for a drive that does not answer.
    QtExecutor settingsExecutor;
    JsonUserDefaults defaults { JsonUserDefaults::standardPath(), settingsExecutor };
    InotifyFileEvents events { executor };
    NotificationCenter notifications;
    QtMenuTracking menuTracking { notifications };
    QtClipboard clipboard;
    AtSpiAnnouncements announcements;
    DesktopFileOpener fileOpener { QDBusConnection::sessionBus(),
        isInFlatpakSandbox() ? DesktopFileOpener::By::portal : DesktopFileOpener::By::launcher };
    QtOpenPanels ownPanels;
    PortalOpenPanels desktopPanels { QDBusConnection::sessionBus(), ownPanels };
    OpenPanels& openPanels = isInFlatpakSandbox() ? static_cast<OpenPanels&>(desktopPanels) : ownPanels;
    PortalColorScheme colorScheme { QDBusConnection::sessionBus(), wear };
    LogindSessionEvents session { QDBusConnection::systemBus() };
    DesktopSystemShortcuts systemShortcuts { desktop.keyboardLayout() };
    DesktopSettingsPrograms desktopSettings;
    std::unique_ptr<Autostart> autostart = makeAutostart();
    std::unique_ptr<WaylandKeys> waylandKeys = makeWaylandKeys(desktop);
    Registration wakes = session.observeDidWake([this] { desktop.didWake(); });
    std::function<void(QString const&)> showInReader;
    TrayBar tray { QDBusConnection::sessionBus(), trayOperations(desktop, showInReader) };
    Registration embeddingTrays = desktop.embeddingTray().observeChanges([this] { tray.trayChanged(); });
    ShortcutStorage shortcuts { defaults, notifications };
    Updates updates { { defaults, executor, session, fileOpener, desktop.workspace(), announcements } };
};

AppDelegate::Services servicesOf(Adapters& on, BusApplicationInstance& instance, StartOptions const& options)
{
    auto& desktop = on.desktop;
    return {
        .library = { on.defaults, on.bookmarks, on.files, on.sandbox, on.events, on.executor, on.clipboard,
            on.announcements, on.fileOpener, on.openPanels, desktop.workspace(), ProgramData::startersFolder() },
        .shortcuts = on.shortcuts,
        .hotKeys = on.hotKeys(),
        .desktopHotKeys = on.desktopHotKeys(),
        .localKeyEvents = desktop.localKeyEvents(),
        .notifications = on.notifications,
        .session = on.session,
        .modifierEvents = desktop.modifierEvents(),
        .permission = desktop.permission(),
        .keys = desktop.keys(),
        .peekKeys = desktop.peekKeys(),
        .keyStrokes = desktop.keyStrokes(),
        .keyboardLayout = desktop.keyboardLayout(),
        .systemShortcuts = on.systemShortcuts,
        .desktopSettings = on.desktopSettings,
        .autostart = *on.autostart,
        .firstWindow = options.isInBackground ? AppDelegate::FirstWindow::none
                                              : AppDelegate::FirstWindow::readerWithoutFolder,
        .screens = desktop.screens(),
        .compositing = desktop.compositing(),
        .makePanelWindow = [&](std::uint64_t window) { return desktop.panelWindow(window); },
        .statusBar = on.tray,
        .instance = instance,
        .applicationFile = ProgramData::command(),
        .quit = [] { QCoreApplication::exit(); },
        .howToCall = [&] { return on.howToCall(); },
        .inWords = [&](Shortcut const& shortcut) { return inWords(shortcut, desktop.keyboardLayout()); },
        .log = [](QString const& sentence) { fail(sentence); },
        .makeUpdater = on.updates.make(),
        .noteUserTime = [&](std::optional<std::uint32_t> time) { desktop.noteUserTime(time); },
    };
}

// Changes the settings as the start asks for, and says how the reader is called where nothing else tells.
std::expected<void, QString> prepare(Adapters& on, StartOptions const& options)
{
    if (options.changeSettings()) {
        if (auto const prepared = prepareSettings(options, on.defaults, on.bookmarks, on.shortcuts); !prepared)
            return prepared;
        on.defaults.flush(); // who reads what is said may look at them
    }
    if (options.changeSettings() || !on.tray.isPresent())
        say(on.howToCall());
    return {};
}

// The program from here to its end.
int serve(X11Desktop& desktop, BusApplicationInstance& instance, StartOptions const& options)
{
    // Not quit(), which closes the windows as the user would.
    TerminationSignals const signals([] { QCoreApplication::exit(); });
    Adapters adapters(desktop);
    if (auto const prepared = prepare(adapters, options); !prepared)
        return fail(prepared.error());
    AppDelegate delegate(servicesOf(adapters, instance, options));
    adapters.showInReader = [&](QString const& sentence) { delegate.showMessage(sentence); };
    OrderlyEnd end([&] {
        delegate.applicationWillTerminate();
        adapters.defaults.flush();
    });
    delegate.applicationDidFinishLaunching();
    auto const result = QApplication::exec();
    end.run();
    adapters.showInReader = nullptr;
    instance.leave(); // once the settings are written, which the next process reads
    if (!adapters.executor.stopWorkers(endPatience))
        OrderlyEnd::leave(result);
    return result;
}

// The exit code of a start that needs no display; absent for all others.
std::optional<int> finishWithoutDisplay(StartOptions const& options, int argc, char** argv)
{
    if (!options.tellsUnanswered && !options.keysFor)
        return std::nullopt;
    QCoreApplication const application(argc, argv);
    InstalledWords const words;
    if (options.tellsUnanswered)
        return failUnanswered();
    auto const text = keysForDesktop(*options.keysFor);
    if (!text)
        return fail(text.error());
    std::cout << text->toStdString() << std::flush;
    return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
}

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    auto options = StartOptions::parse(argc, argv);
    if (!options)
        return fail(options.error(), misused);
    if (auto const exitCode = finishWithoutDisplay(*options, argc, argv))
        return *exitCode;
    leaveWorkingFolder();
    X11Desktop::ToolkitChoice const choice;
    if (auto const display = X11Desktop::probe(); !display)
        return fail(display.error());

    TerminationSignals::block(); // before anything starts a thread
    auto const start = BusApplicationInstance::Start::ofThisProcess();
    // The bus passes on what is wanted of the program, which may be no window at all.
    options->isInBackground |= start.by == BusApplicationInstance::Start::By::bus;
    QApplication application(argc, argv);
    choice.forget();
    InstalledWords const words;
    QApplication::setDesktopFileName(BusApplicationInstance::name());
    QApplication::setQuitOnLastWindowClosed(false);
    application.setProperty(ReleaseVersionDisplay::infoKey, QStringLiteral(QUILLORY_RELEASE_VERSION));
    BusApplicationInstance instance(QDBusConnection::sessionBus(), start);
    bool isRefused = false;
    auto const role = takePart(instance, *options, [&](ApplicationInstance::Outcome const& outcome) {
        isRefused = !outcome;
        if (isRefused)
            fail(outcome.error());
    });
    if (auto const exitCode = leaveToEarlierProcess(role, *options, isRefused))
        return *exitCode;

    auto const desktop = X11Desktop::open(application);
    if (!desktop)
        return fail(desktop.error());
    return serve(**desktop, instance, *options);
}
