// Shows what the session's keys are to the gesture: each event that arrives, the recognizer's state after it, and what
// the gesture's owner is told. With --play it presses the keys itself.

#include "input/ModifierGestureMonitor.h"
#include "linux/qt/QtExecutor.h"
#include "linux/x11/X11InputPermission.h"
#include "linux/x11/X11KeyState.h"
#include "linux/x11/X11ModifierEvents.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QCoreApplication>
#include <QTextStream>

#include <array>
#include <cstdio>

using namespace Quillory;
using namespace std::chrono_literals;

namespace {

constexpr auto usage = "Usage: quillory-gesture-trace (shift | option) [--play KEYCODE]\n"
                       "\n"
                       "Prints the session's events and the gesture that they make, until it is interrupted.\n"
                       "  --play KEYCODE   presses this key twice, holds it, lets it go, and ends\n";

class Trace {
public:
    explicit Trace(Executor const& executor)
        : m_executor(executor)
        , m_start(executor.now())
    {
    }

    void line(QString const& text) { m_out << time(m_executor.now()) << QStringLiteral("  ") << text << Qt::endl; }

    void event(ModifierEvent const& event)
    {
        static constexpr std::array types { "left mouse button", "right mouse button", "other mouse button", "key down",
            "flags changed" };
        line(QStringLiteral("event   %1, key %2, flags 0x%3, happened at %4")
                .arg(QLatin1StringView(types[static_cast<std::size_t>(event.type)]))
                .arg(event.keyCode)
                .arg(static_cast<std::uint32_t>(event.flags), 0, 16)
                .arg(time(event.timestamp).trimmed()));
    }

    void state(ModifierGestureRecognizer const& recognizer)
    {
        static constexpr std::array names { "idle", "first press", "first tap", "second press", "active" };
        line(QStringLiteral("state   ") + QLatin1StringView(names[recognizer.state().index()]));
    }

private:
    QString time(std::chrono::nanoseconds time) const
    {
        auto const milliseconds = std::chrono::duration<double, std::milli>(time - m_start).count();
        return QStringLiteral("%1 ms").arg(milliseconds, 9, 'f', 3);
    }

    Executor const& m_executor;
    std::chrono::nanoseconds const m_start;
    QTextStream m_out { stdout };
};

// The same operations, which the trace is told of as well.
ModifierGestureMonitor::Operations traced(
    ModifierGestureMonitor::Operations operations, Trace& trace, std::function<void()> showState)
{
    auto const observe = operations.observeEvents;
    operations.observeEvents = [=, &trace](auto receive, auto interrupted) {
        return observe(
            [=, &trace](ModifierEvent const& event) {
                trace.event(event);
                receive(event);
                showState();
            },
            [=, &trace] {
                trace.line(QStringLiteral("event   interruption"));
                interrupted();
                showState();
            });
    };
    return operations;
}

int run(ModifierGesture gesture, std::optional<std::uint16_t> played)
{
    auto const connection = X11Connection::open();
    auto const keyboard = SyntheticKeyboard::open();
    if (!connection || !keyboard) {
        std::fputs(qPrintable((connection ? keyboard.error() : connection.error()) + u'\n'), stderr);
        return 1;
    }
    X11Clock clock;
    X11InputPermission const permission(**connection, sessionOf(**connection));
    X11ModifierEvents events(**connection, clock, permission);
    X11KeyState const keys(**connection);
    QtExecutor executor;
    Trace trace(executor);
    ModifierGestureMonitor const* watched = nullptr;
    auto const operations = ModifierGestureMonitor::Operations::of(events, permission, keys);
    ModifierGestureMonitor monitor(executor, traced(operations, trace, [&] { trace.state(watched->recognizer()); }));
    watched = &monitor;

    std::vector<Registration> steps;
    monitor.began = [&](ModifierFlags flags, std::uint16_t keyCode) {
        trace.line(QStringLiteral("began   flags 0x%1, key %2").arg(std::uint32_t(flags), 0, 16).arg(keyCode));
        if (played)
            steps.push_back(executor.after(500ms, [&] { (*keyboard)->release(*played); }));
    };
    monitor.ended = [&] {
        trace.line(QStringLiteral("ended"));
        if (played)
            steps.push_back(executor.after(50ms, [] { QCoreApplication::quit(); }));
    };
    monitor.configure(gesture, permission.canListenToEvents());
    trace.line(monitor.isObserving() ? QStringLiteral("listening") : QStringLiteral("no permission to listen"));
    if (played) {
        steps.push_back(executor.after(100ms, [&] { (*keyboard)->press(*played); }));
        steps.push_back(executor.after(190ms, [&] { (*keyboard)->release(*played); }));
        steps.push_back(executor.after(320ms, [&] { (*keyboard)->press(*played); }));
    }
    return monitor.isObserving() ? QCoreApplication::exec() : 1;
}

}

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    auto const arguments = QCoreApplication::arguments();
    auto const gesture = modifierGestureFromRawValue(arguments.value(1));
    bool isNumber = false;
    auto const key = arguments.value(3).toUShort(&isNumber);
    bool const plays = arguments.size() == 4 && arguments[2] == u"--play" && isNumber;
    if (!gesture || gesture == ModifierGesture::off || (arguments.size() != 2 && !plays)) {
        std::fputs(usage, stderr);
        return 2;
    }
    return run(*gesture, plays ? std::optional(key) : std::nullopt);
}
