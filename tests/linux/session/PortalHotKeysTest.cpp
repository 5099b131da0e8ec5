#include "PrivateBus.h"

#include "linux/freedesktop/PortalHotKeys.h"
#include "support/EventLoop.h"

#include <QProcess>

namespace Quillory {
namespace {

using State = DesktopHotKeys::State;
using Phase = HotKeys::Phase;

constexpr std::uint16_t keyJ = 38, keyK = 40, unknownKey = 63;
constexpr auto controlAlt = ModifierFlags::control | ModifierFlags::option;

DesktopHotKeys::Wish const toggle { u"toggle"_s, u"Show"_s, keyK, controlAlt };
DesktopHotKeys::Wish const peek { u"peek"_s, u"Peek"_s, keyJ, ModifierFlags::command | ModifierFlags::shift };

// The adapter, and a portal in another process or none; the log has what the adapter does, in order.
struct Desk {
    explicit Desk(std::optional<QString> const& modes, PortalHotKeys::Repeats const& withRepeats = {})
        : repeats(withRepeats)
        , hasPortal(modes && start(*modes))
    {
        changes = keys.observeChanges([this] {
            static QStringList const names { u"unavailable"_s, u"asking"_s, u"bound"_s, u"refused"_s };
            log << (names.at(int(keys.state())) + u' ' + keys.trigger(u"toggle"_s)).trimmed();
        });
        keys.bind({ toggle, peek });
    }
    ~Desk()
    {
        portal.kill();
        portal.waitForFinished();
    }

    bool start(QString const& modes)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        portal.setProcessEnvironment(environment);
        portal.start(QStringLiteral(PORTAL), modes.split(u' ', Qt::SkipEmptyParts));
        EXPECT_TRUE(loop.runUntil([&] { return portal.canReadLine(); }));
        return !portal.readLine().isEmpty();
    }
    void tell(QString const& command) { portal.write(command.toUtf8() + '\n'); }
    Registration listen(DesktopHotKeys::Wish const& wish)
    {
        return *keys.registerHotKey(wish.keyCode, wish.modifiers,
            [this, id = wish.id](Phase phase) { log << id + (phase == Phase::pressed ? u" down"_s : u" up"_s); });
    }
    // All that is logged until the last of it has come.
    void expect(QStringList const& expected)
    {
        auto const isThere = [&] { return !log.isEmpty() && log.last() == expected.last(); };
        EXPECT_TRUE(loop.runUntil(isThere, std::chrono::seconds(10)));
        EXPECT_EQ(std::exchange(log, {}).join(u", "_s), expected.join(u", "_s));
    }
    // Until the last of them has come; empty for none at all.
    void expectCalls(QString const& expected)
    {
        QString calls;
        loop.runUntil(
            [&] {
                while (portal.canReadLine())
                    calls += (calls.isEmpty() ? QString() : u", "_s) + QString::fromUtf8(portal.readLine()).trimmed();
                return calls.size() >= expected.size();
            },
            std::chrono::seconds(10));
        EXPECT_EQ(calls, expected);
    }

    PortalHotKeys::Repeats const repeats;
    EventLoop loop;
    PrivateBus bus;
    QProcess portal;
    bool const hasPortal;
    QStringList log;
    PortalHotKeys keys { bus.connect(),
        { .symbolName =
                [](std::uint16_t key) {
                    return key == keyK || key == keyJ ? std::optional(key == keyK ? u"k"_s : u"j"_s) : std::nullopt;
                },
            .noteUserTime = [this] { log << u"now"_s; } },
        repeats };
    Registration changes;
    Registration toggleKey = listen(toggle), peekKey = listen(peek);
};

QString const introduced = u"Register org.quillory.Quillory, CreateSession"_s;
QString const asked = introduced + u", ListShortcuts, BindShortcuts toggle=CTRL+ALT+k peek=SHIFT+LOGO+j"_s;

TEST(PortalHotKeys, Each_kind_of_portal_is_asked_as_it_wants_and_opens_no_window_of_the_desktop_without_need)
{
    struct Row {
        std::optional<QString> modes;
        QString outcome, calls;
    };
    for (auto const& [modes, outcome, calls] : {
             Row { u""_s, u"bound ctrl-alt-k"_s, asked },
             Row { u"keeps"_s, u"bound ctrl-alt-k"_s, introduced + u", ListShortcuts"_s },
             Row { u"silent"_s, u"bound ctrl-alt-k"_s, asked + u", ListShortcuts"_s },
             Row { u"refuses"_s, u"refused"_s, asked + u", Close"_s },
             Row { u"denies"_s, u"refused"_s, introduced },
             Row { u"lacks"_s, u"unavailable"_s, {} },
             Row { std::nullopt, u"unavailable"_s, {} },
         }) {
        SCOPED_TRACE(modes.value_or(u"no portal"_s).toStdString());
        Desk desk(modes);
        EXPECT_EQ(desk.keys.state(), State::asking);
        desk.expect({ outcome });
        desk.expectCalls(calls);
        EXPECT_TRUE(desk.keys.probe(keyK, controlAlt)) << "what may be taken is the desktop's affair";
    }
    // One that ends while the user is asked has refused nothing.
    Desk desk(u"waits"_s);
    desk.expectCalls(asked);
    desk.tell(u"drop"_s);
    desk.expect({ u"unavailable"_s });
    EventLoop loop;
    PortalHotKeys none(QDBusConnection(u"no such bus"_s), {});
    EXPECT_EQ(none.state(), State::asking) << "never inside the call";
    EXPECT_TRUE(loop.runUntil([&] { return none.state() == State::unavailable; }));
}

TEST(PortalHotKeys, Presses_and_releases_come_in_pairs_whatever_the_portal_does)
{
    QString const down = u"toggle down"_s, up = u"toggle up"_s;
    struct Row {
        QStringList told, log;
    };
    for (auto const& [told, log] : {
             Row { { u"press toggle"_s, u"press toggle"_s, u"press toggle"_s, u"release toggle"_s },
                 { u"now"_s, down, up } },
             Row { { u"release toggle"_s, u"press toggle"_s, u"release toggle"_s, u"release toggle"_s,
                       u"rebind toggle F9"_s },
                 { u"now"_s, down, up, u"bound F9"_s } },
             Row { { u"press other"_s, u"press peek"_s, u"press toggle"_s, u"release peek"_s },
                 { u"now"_s, u"peek down"_s, u"now"_s, down, u"peek up"_s } },
             Row { { u"press toggle"_s, u"close"_s }, { u"now"_s, down, up, u"refused"_s } },
             Row { { u"press toggle"_s, u"drop"_s }, { u"now"_s, down, up, u"unavailable"_s } },
             Row { { u"press toggle"_s, u"drop"_s, u"return"_s },
                 { u"now"_s, down, up, u"unavailable"_s, u"asking"_s, u"bound ctrl-alt-k"_s } },
         }) {
        SCOPED_TRACE(told.join(u", "_s).toStdString());
        Desk desk(u"keeps"_s);
        desk.expect({ u"bound ctrl-alt-k"_s });
        for (auto const& command : told)
            desk.tell(command);
        desk.expect(log);
    }
}

TEST(PortalHotKeys, A_held_key_that_repeats_as_releases_and_presses_stays_held)
{
    using namespace std::chrono_literals;
    Desk desk(u"keeps"_s, { .earliest = 0ms, .longestGap = 300ms });
    desk.expect({ u"bound ctrl-alt-k"_s });
    for (auto const* const command :
        { "press toggle", "repeat toggle", "press toggle", "repeat toggle", "repeat toggle" })
        desk.tell(QString::fromLatin1(command));
    desk.tell(u"rebind toggle F9"_s);
    desk.expect({ u"now"_s, u"toggle down"_s, u"bound F9"_s });
    desk.tell(u"release toggle"_s);
    desk.tell(u"rebind toggle F8"_s);
    desk.expect({ u"bound F8"_s, u"toggle up"_s });
}

TEST(PortalHotKeys, Only_other_wishes_another_portal_or_the_user_ask_the_portal_again)
{
    Desk desk(u"refuses"_s);
    desk.expect({ u"refused"_s });
    desk.keys.bind({ toggle, peek });
    EXPECT_EQ(desk.keys.state(), State::refused);
    desk.tell(u"agree"_s);
    desk.keys.askAgain();
    desk.expect({ u"asking"_s, u"bound ctrl-alt-k"_s });
    desk.expectCalls(asked + u", Close, "_s + asked);

    // What the program itself does with its hot keys is none of the portal's business.
    desk.tell(u"press toggle"_s);
    desk.expect({ u"now"_s, u"toggle down"_s });
    desk.toggleKey = desk.listen(toggle);
    desk.keys.askAgain();
    for (auto const* const command : { "press toggle", "release toggle", "press toggle" })
        desk.tell(QString::fromLatin1(command));
    desk.expect({ u"now"_s, u"toggle down"_s });

    // Other keys, before the portal has answered to the ones before.
    desk.keys.bind({ peek });
    desk.keys.bind({ { toggle.id, {}, unknownKey, controlAlt } });
    desk.expect({ u"toggle up"_s, u"asking"_s, u"bound"_s });
    desk.expectCalls(u"Close, "_s + introduced + u", ListShortcuts, BindShortcuts toggle="_s);
    desk.keys.bind({});
    desk.expect({ u"asking"_s, u"bound"_s });
    desk.expectCalls(u"Close"_s);
}

}
}
