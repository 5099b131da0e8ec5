#include "linux/freedesktop/AutostartEntry.h"
#include "StandInPortal.h"
#include "linux/freedesktop/DesktopEntry.h"
#include "linux/freedesktop/PortalAutostart.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

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
    StandInPortal portal;
    portal.start();
    TemporaryFolder const host;
    PortalAutostart autostart(QDBusConnection::sessionBus(), { host.path("autostart"), {} });
    struct Case {
        Autostart::State wanted;
        uint answer;
        bool grants;
        bool isAsWanted;
        Autostart::State then;
    };
    using enum Autostart::State;
    for (auto const& [wanted, answer, grants, isAsWanted, then] :
        { Case { on, 0, false, false, off }, Case { on, 1, true, false, off }, Case { on, 0, true, true, on },
            Case { off, 1, false, false, on }, Case { off, 0, false, true, off } }) {
        std::optional<bool> told;
        portal.response = answer;
        portal.results[u"autostart"_s] = grants;
        autostart.ask(wanted, [&](auto const& result) { told = result.has_value(); });
        EXPECT_TRUE(loop.runUntil([&] { return told.has_value(); }));
        EXPECT_EQ(told, isAsWanted);
        EXPECT_EQ(portal.options[u"autostart"_s].toBool(), wanted == on);
        EXPECT_EQ(portal.options[u"commandline"_s].toStringList(), QStringList({ u"quillory"_s, u"--background"_s }));
        EXPECT_EQ(autostart.state(), then);
    }
    host.write("autostart/org.quillory.Quillory.desktop", "[Desktop Entry]\nExec=true\n");
    EXPECT_EQ(autostart.state(), on) << "what stands there counts";
}

}
}
