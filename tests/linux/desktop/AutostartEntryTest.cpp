#include "linux/freedesktop/AutostartEntry.h"
#include "linux/freedesktop/DesktopEntry.h"
#include "linux/freedesktop/PortalAutostart.h"
#include "support/BusService.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

namespace Quillory {
namespace {

class AutostartEntryTest : public Test {
protected:
    AutostartEntry entry(QString const& program = u"/bin/sh"_s) const
    {
        return { { root.path("own/autostart"), { root.path("shared") } }, program };
    }
    std::expected<void, QString> ask(AutostartEntry entry, Autostart::State wanted) const
    {
        std::expected<void, QString> result = std::unexpected(u"no answer"_s);
        entry.ask(wanted, [&](auto const& answer) { result = answer; });
        return result;
    }

    TemporaryFolder root;
    QByteArray const own = "own/autostart/org.quillory.Quillory.desktop";
};

TEST_F(AutostartEntryTest, It_is_told_as_it_stands_whoever_wrote_it)
{
    EXPECT_EQ(entry().state(), Autostart::State::off) << "no entry";
    struct Row {
        char const* lines;
        Autostart::State state;
    };
    for (auto const& [lines, state] : std::initializer_list<Row> {
             { "Exec=quillory\n", Autostart::State::on },
             { "Exec=quillory\nTryExec=sh\n", Autostart::State::on },
             { "Exec=quillory\nTryExec=/nowhere/quillory\n", Autostart::State::off },
             { "Exec=quillory\nHidden=true\n", Autostart::State::off },
             { "Exec=quillory\nX-GNOME-Autostart-enabled=false\n", Autostart::State::off },
             { "Exec=quillory\n[Desktop Action x]\nHidden=true\n", Autostart::State::on },
             { "Name=Quillory\n", Autostart::State::off },
         }) {
        root.write(own, QByteArray("[Desktop Entry]\nType=Application\n") + lines);
        EXPECT_EQ(entry().state(), state) << lines;
    }
}

TEST_F(AutostartEntryTest, Turned_on_it_starts_the_program_and_turned_off_nothing_is_left)
{
    for (auto const& name : { "quillory", "a \"b\" $c `d` \\e 50%" }) {
        root.write(name, "#!/bin/sh\n");
        QFile::setPermissions(root.path(name), QFile::ReadOwner | QFile::ExeOwner);
        ASSERT_TRUE(ask(entry(root.path(name)), Autostart::State::on)) << name;
        EXPECT_EQ(entry().state(), Autostart::State::on) << name;
        auto const written = DesktopEntry::parse(root.read(own), {}, {});
        ASSERT_TRUE(written) << name;
        auto const percent = root.path(name).replace(u'%', u"%%"_s); // of which quotes keep both here
        EXPECT_EQ(written->commandFor(u"x"_s).value_or(QStringList()).value(0), percent) << name;
        root.rename(name, "moved");
        EXPECT_EQ(entry().state(), Autostart::State::off) << "the program is gone";
        root.rename("moved", name);
        ASSERT_TRUE(ask(entry(), Autostart::State::off));
        EXPECT_FALSE(root.has(own)) << name;
    }
    root.write("shared/org.quillory.Quillory.desktop", "[Desktop Entry]\nType=Application\nExec=quillory\n");
    for (auto const state : { Autostart::State::on, Autostart::State::off, Autostart::State::on }) {
        ASSERT_TRUE(ask(entry(), state));
        EXPECT_EQ(entry().state(), state) << "beside an entry of the system";
    }
    root.remove("own");
    root.write("own", "a file where the folder should be");
    EXPECT_FALSE(ask(entry(), Autostart::State::off));
}

TEST(PortalAutostart, What_the_portal_grants_counts_and_not_that_it_answers)
{
    EventLoop loop;
    uint response = 0;
    bool granted = true;
    QVariantMap wishes;
    BusService const portal(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"background"_s),
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        [&](QDBusMessage const& call, QDBusConnection& bus) {
            wishes = qdbus_cast<QVariantMap>(call.arguments().at(1));
            auto const path = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
                call.service().mid(1).replace(u'.', u'_'), wishes[u"handle_token"_s].toString());
            auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
            bus.send(signal << response << QVariantMap { { u"autostart"_s, granted } });
            return std::optional(QVariantList { QVariant::fromValue(QDBusObjectPath(path)) });
        });
    PortalAutostart autostart(QDBusConnection::sessionBus());
    for (auto const& [wanted, answer, grants, isAsWanted] :
        { std::tuple(Autostart::State::on, 0U, true, true), std::tuple(Autostart::State::on, 0U, false, false),
            std::tuple(Autostart::State::on, 1U, true, false), std::tuple(Autostart::State::off, 0U, false, true) }) {
        std::optional<bool> told;
        response = answer;
        granted = grants;
        autostart.ask(wanted, [&](auto const& result) { told = result.has_value(); });
        EXPECT_TRUE(loop.runUntil([&] { return told.has_value(); }));
        EXPECT_EQ(told, isAsWanted);
        EXPECT_EQ(wishes[u"autostart"_s].toBool(), wanted == Autostart::State::on);
        EXPECT_EQ(wishes[u"commandline"_s].toStringList(), QStringList({ u"quillory"_s, u"--background"_s }));
    }
}

}
}
