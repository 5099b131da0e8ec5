#include "PrivateBus.h"

#include "platform/linux/freedesktop/LogindSessionEvents.h"
#include "support/Desks.h"
#include "support/EventLoop.h"
#include "support/FakeSessionEvents.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

// A little logind: one session, and a pipe whose other end shows who holds sleep up.
class SmallLogind final : public QDBusVirtualObject {
public:
    explicit SmallLogind(QDBusConnection const& bus)
        : m_bus(bus)
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(u"/org/freedesktop/login1"_s, this, QDBusConnection::SubPath));
        EXPECT_TRUE(m_bus.registerService(u"org.freedesktop.login1"_s));
    }

    ~SmallLogind() override
    {
        m_bus.unregisterObject(u"/org/freedesktop/login1"_s, QDBusConnection::UnregisterTree);
        if (m_delay >= 0)
            close(m_delay);
    }

    QString introspect(QString const&) const override { return {}; }

    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override
    {
        if (message.member() == u"Inhibit") {
            EXPECT_EQ(message.arguments().at(0), u"sleep"_s);
            EXPECT_EQ(message.arguments().at(3), u"delay"_s);
            connection.send(message.createReply(QVariant::fromValue(newDelay())));
        } else {
            session = message.arguments().at(0).toString();
            connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(sessionPath))));
        }
        return true;
    }

    void prepareForSleep(bool isAboutToSleep)
    {
        auto signal = QDBusMessage::createSignal(
            u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
        m_bus.send(signal << isAboutToSleep);
    }
    void lock() { m_bus.send(QDBusMessage::createSignal(sessionPath, u"org.freedesktop.login1.Session"_s, u"Lock"_s)); }
    void change(QVariantMap const& properties, QString const& interface = u"org.freedesktop.login1.Session"_s)
    {
        auto signal = QDBusMessage::createSignal(
            sessionPath, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
        m_bus.send(signal << interface << properties << QStringList());
    }

    // Somebody holds sleep up as long as the pipe has a writer.
    bool isSleepHeldUp() const
    {
        pollfd reader { m_delay, 0, 0 };
        return m_delay >= 0 && poll(&reader, 1, 0) == 0;
    }

    QString session; // that was asked for

private:
    QDBusUnixFileDescriptor newDelay()
    {
        std::array<int, 2> ends {};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        if (m_delay >= 0)
            close(m_delay);
        m_delay = ends[0];
        QDBusUnixFileDescriptor writer;
        writer.giveFileDescriptor(ends[1]);
        return writer;
    }

    QString const sessionPath = u"/org/freedesktop/login1/session/_32"_s;
    QDBusConnection m_bus;
    int m_delay = -1;
};

// What every implementation must do, told on a desk: the service and the system that it listens to.
class SessionDesk {
public:
    virtual ~SessionDesk() = default;
    virtual SessionEvents& events() = 0;
    virtual void sleep() = 0;
    virtual void wake() = 0;
    virtual void resign() = 0;
    // Returns when what was done has been told.
    virtual void settle() { }
};

class FakeDesk final : public SessionDesk {
public:
    SessionEvents& events() override { return m_events; }
    void sleep() override { m_events.sleep(); }
    void wake() override { m_events.wake(); }
    void resign() override { m_events.resign(); }

private:
    FakeSessionEvents m_events;
};

class LogindDesk final : public SessionDesk {
public:
    LogindDesk()
    {
        m_signs = m_events.observeDidWake([this] { ++m_wakes; });
        // The bus passes on what it was asked for; when it has been asked can only be tried.
        bool isHeard = false;
        auto const trial = m_events.observeSessionDidResignActive([&] { isHeard = true; });
        while (!isHeard) {
            resign();
            settle();
        }
    }
    SessionEvents& events() override { return m_events; }
    void sleep() override { logind.prepareForSleep(true); }
    void wake() override
    {
        ++m_wakesSent;
        logind.prepareForSleep(false);
    }
    void resign() override { logind.change({ { u"Active"_s, false } }); }

    // The bus keeps what one program sends in order, so that a last signal of its own ends the wait.
    void settle() override
    {
        wake();
        EXPECT_TRUE(loop.runUntil([&] { return m_wakes == m_wakesSent && logind.isSleepHeldUp(); }));
    }

    EventLoop loop;
    PrivateBus bus;
    SmallLogind logind { bus.connect() };

private:
    LogindSessionEvents m_events { bus.connect() };
    int m_wakes = 0;
    int m_wakesSent = 0;
    Registration m_signs;
};

class SessionEventsContract : public ContractOn<SessionDesk> {
protected:
    SessionEvents::Action note(std::string what)
    {
        return [this, what = std::move(what)] { told.push_back(what); };
    }
    std::unique_ptr<SessionDesk> desk = GetParam().make();
    std::vector<std::string> told;
};

TEST_P(SessionEventsContract, Each_event_is_told_in_order_to_those_who_observe_it_and_no_longer)
{
    auto const sleeping = desk->events().observeWillSleep(note("sleep"));
    auto again = desk->events().observeWillSleep(note("sleep again"));
    auto const resigning = desk->events().observeSessionDidResignActive(note("resign"));
    {
        auto const waking = desk->events().observeDidWake(note("wake"));
        desk->sleep();
        desk->wake();
        desk->resign();
        while (told.size() < 4)
            desk->settle();
        EXPECT_THAT(std::vector(told.begin(), told.begin() + 4), ElementsAre("sleep", "sleep again", "wake", "resign"));
    }
    again.end();
    desk->settle();
    told.clear();
    desk->sleep();
    desk->wake();
    desk->resign();
    desk->settle();
    EXPECT_THAT(told, ElementsAre("sleep", "resign"));
}

INSTANTIATE_TEST_SUITE_P(Fake, SessionEventsContract, deskOf<FakeDesk>("fake"));
INSTANTIATE_TEST_SUITE_P(Logind, SessionEventsContract, deskOf<LogindDesk>("logind"));

TEST(LogindSessionEvents, Sleep_waits_until_all_have_been_told_and_again_the_next_time)
{
    LogindDesk desk;
    bool wasHeldUp = false;
    auto const sleeping = desk.events().observeWillSleep([&] { wasHeldUp = desk.logind.isSleepHeldUp(); });
    for (int time = 0; time < 2; ++time) {
        wasHeldUp = false;
        desk.sleep();
        EXPECT_TRUE(desk.loop.runUntil([&] { return !desk.logind.isSleepHeldUp(); }));
        EXPECT_TRUE(wasHeldUp);
        desk.settle();
    }
}

TEST(LogindSessionEvents, A_locked_or_inactive_session_has_resigned_and_other_news_say_nothing)
{
    LogindDesk desk;
    int told = 0;
    auto const resigning = desk.events().observeSessionDidResignActive([&] { ++told; });
    desk.logind.change({ { u"Active"_s, true }, { u"IdleHint"_s, true } });
    desk.logind.change({ { u"LockedHint"_s, false } });
    desk.logind.change({ { u"Active"_s, false } }, u"org.example.Other"_s);
    desk.settle();
    EXPECT_EQ(told, 0);
    desk.logind.lock();
    desk.logind.change({ { u"LockedHint"_s, true } });
    desk.logind.change({ { u"Active"_s, false } });
    desk.settle();
    EXPECT_EQ(told, 3);
}

TEST(LogindSessionEvents, Another_program_does_not_put_us_to_sleep)
{
    LogindDesk desk;
    int told = 0;
    auto const sleeping = desk.events().observeWillSleep([&] { ++told; });
    auto stranger = desk.bus.connect();
    auto signal = QDBusMessage::createSignal(
        u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
    stranger.send(signal << true);
    // Its own call comes back after the bus has passed the signal on.
    stranger.call(QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    desk.settle();
    EXPECT_EQ(told, 0);
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
