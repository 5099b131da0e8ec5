#include "PrivateBus.h"

#include "linux/files/FileDescriptor.h"
#include "linux/freedesktop/LogindSessionEvents.h"
#include "support/BusService.h"
#include "support/EventLoop.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>

#include <array>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace Quillory {
namespace {

// A little logind: one session, and a pipe whose other end shows who holds sleep up.
class SmallLogind {
public:
    explicit SmallLogind(QDBusConnection const& bus)
        : m_bus(bus)
    {
        EXPECT_TRUE(m_service.isRegistered);
    }

    static QDBusMessage sleepSignal(bool isAboutToSleep)
    {
        auto signal = QDBusMessage::createSignal(
            u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
        return signal << isAboutToSleep;
    }
    void prepareForSleep(bool isAboutToSleep) { m_bus.send(sleepSignal(isAboutToSleep)); }
    void lock() { m_bus.send(QDBusMessage::createSignal(sessionPath, u"org.freedesktop.login1.Session"_s, u"Lock"_s)); }
    void change(QString const& property, bool value, QString const& interface = u"org.freedesktop.login1.Session"_s)
    {
        auto signal = QDBusMessage::createSignal(
            sessionPath, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
        m_bus.send(signal << interface << QVariantMap { { property, value } } << QStringList());
    }

    // Somebody holds sleep up as long as the pipe has a writer.
    bool isSleepHeldUp() const
    {
        pollfd reader { m_delay.number(), 0, 0 };
        return m_delay.isOpen() && poll(&reader, 1, 0) == 0;
    }

private:
    QVariantList answer(QDBusMessage const& call)
    {
        if (call.member() != u"Inhibit")
            return { QVariant::fromValue(QDBusObjectPath(sessionPath)) };
        EXPECT_EQ(call.arguments().at(0), u"sleep"_s);
        EXPECT_EQ(call.arguments().at(3), u"delay"_s);
        return { QVariant::fromValue(newDelay()) };
    }
    QDBusUnixFileDescriptor newDelay()
    {
        std::array<int, 2> ends {};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        m_delay = FileDescriptor(ends[0]);
        QDBusUnixFileDescriptor writer;
        writer.giveFileDescriptor(ends[1]);
        return writer;
    }

    QString const sessionPath = u"/org/freedesktop/login1/session/_32"_s;
    QDBusConnection m_bus;
    FileDescriptor m_delay;
    BusService m_service { m_bus, u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
        [this](QDBusMessage const& call, auto&) { return answer(call); } };
};

// The service is on the bus, and the observer has begun to hear it.
class LogindSessionEventsTest : public Test {
protected:
    LogindSessionEventsTest()
    {
        EXPECT_TRUE(loop.runUntil([&] { return logind.isSleepHeldUp(); })) << "from the start";
        m_signs = events.observeDidWake([this] { ++m_wakes; });
        // The bus passes on what it was asked for; when it has been asked can only be tried.
        bool isHeard = false;
        auto const trial = events.observeSessionDidResignActive([&] { isHeard = true; });
        while (!isHeard) {
            resign();
            settle();
        }
    }
    void sleep() { logind.prepareForSleep(true); }
    void wake()
    {
        ++m_wakesSent;
        logind.prepareForSleep(false);
    }
    void resign() { logind.change(u"Active"_s, false); }

    // The bus keeps what one program sends in order, so that a last signal of its own ends the wait.
    void settle()
    {
        wake();
        EXPECT_TRUE(loop.runUntil([&] { return m_wakes == m_wakesSent && logind.isSleepHeldUp(); }));
    }

    SessionEvents::Action note(char const* what)
    {
        return [this, what] { told.emplace_back(what); };
    }

    EventLoop loop;
    PrivateBus bus;
    SmallLogind logind { bus.connect() };

    LogindSessionEvents events { bus.connect() };
    std::vector<std::string> told;

private:
    int m_wakes = 0;
    int m_wakesSent = 0;
    Registration m_signs;
};

TEST_F(LogindSessionEventsTest, Each_event_is_told_in_order_to_those_who_observe_it_and_no_longer)
{
    auto const sleeping = events.observeWillSleep(note("sleep"));
    auto again = events.observeWillSleep(note("sleep again"));
    auto const resigning = events.observeSessionDidResignActive(note("resign"));
    {
        auto const waking = events.observeDidWake(note("wake"));
        sleep();
        wake();
        resign();
        while (told.size() < 4)
            settle();
        EXPECT_THAT(std::vector(told.begin(), told.begin() + 4), ElementsAre("sleep", "sleep again", "wake", "resign"));
    }
    again.end();
    settle();
    told.clear();
    sleep();
    wake();
    resign();
    settle();
    EXPECT_THAT(told, ElementsAre("sleep", "resign"));
}

TEST_F(LogindSessionEventsTest, Sleep_waits_until_all_have_been_told_and_again_the_next_time)
{
    for (int time = 0; time < 2; ++time) {
        bool wasHeldUp = false;
        auto const sleeping = events.observeWillSleep([&] { wasHeldUp = logind.isSleepHeldUp(); });
        sleep();
        EXPECT_TRUE(loop.runUntil([&] { return !logind.isSleepHeldUp(); }));
        EXPECT_TRUE(wasHeldUp);
        settle();
    }
}

TEST_F(LogindSessionEventsTest, A_locked_or_inactive_session_has_resigned_and_other_news_and_programs_say_nothing)
{
    int resigned = 0, slept = 0;
    auto const resigning = events.observeSessionDidResignActive([&] { ++resigned; });
    auto const sleeping = events.observeWillSleep([&] { ++slept; });
    logind.change(u"Active"_s, true);
    logind.change(u"IdleHint"_s, true);
    logind.change(u"LockedHint"_s, false);
    logind.change(u"Active"_s, false, u"org.example.Other"_s);
    auto stranger = bus.connect();
    stranger.send(SmallLogind::sleepSignal(true));
    // Its own call comes back after the bus has passed the signal on.
    stranger.call(QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    settle();
    EXPECT_EQ(resigned, 0);
    EXPECT_EQ(slept, 0);
    logind.lock();
    logind.change(u"LockedHint"_s, true);
    resign();
    settle();
    EXPECT_EQ(resigned, 3);
}

TEST(LogindSessionEvents, Without_bus_or_logind_nothing_happens)
{
    EventLoop loop;
    LogindSessionEvents onNoBus { QDBusConnection(u"no such bus"_s) };
    auto const first = onNoBus.observeWillSleep([] { });
    PrivateBus bus;
    LogindSessionEvents withoutLogind { bus.connect() };
    int told = 0;
    auto const second = withoutLogind.observeWillSleep([&] { ++told; });
    // It may come later.
    SmallLogind logind { bus.connect() };
    logind.prepareForSleep(true);
    EXPECT_TRUE(loop.runUntil([&] { return told == 1; }));
}

}
}
