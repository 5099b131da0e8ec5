#include "e2e/EmbeddingTray.h"
#include "e2e/ReaderOnADesktop.h"
#include "e2e/TrayHost.h"

#include <QJsonArray>
#include <QScopeGuard>

namespace Quillory {
namespace {

class TrayTest : public ReaderOnADesktop {
protected:
    TrayTest()
    {
        program.save(u"a.md"_s, sheetOf("First"));
        program.save(u"b.md"_s, sheetOf("Tom & a_b"));
        pin({ u"b.md"_s, u"gone.md"_s });
    }

    void pin(QStringList const& sheets)
    {
        program.setSetting(u"pinnedSheets"_s, QJsonObject { { program.folder(), QJsonArray::fromStringList(sheets) } });
    }
    QString pinOf(QString const& sheet) const { return u"Quillory.Pin."_s + program.folder() + u'.' + sheet; }
    bool isAway()
    {
        return Desktop::eventually([&] { return !desktop.isReaderOnScreen(); });
    }
    qsizetype connections() const { return program.openFiles().filter(u"socket"_s).size(); }

    QString const main = u"Quillory.Main"_s;
    QString const pinned = pinOf(u"b.md"_s);
};

TEST_F(TrayTest, Items_come_to_every_tray_and_follow_the_library)
{
    start();
    ASSERT_TRUE(comesUp()) << "without a tray";
    auto const before = connections();
    for (int tray = 0; tray < 2; ++tray) {
        SCOPED_TRACE(tray);
        TrayHost host;
        ASSERT_TRUE(host.eventuallyHas({ main, pinned }));
        EXPECT_EQ(host.toolTip(main), u"Open Quillory to read your cheat sheets"_s);
        EXPECT_EQ(host.of(main, u"Status"_s), u"Active"_s);
        EXPECT_EQ(host.of(pinned, u"Title"_s), u"Tom & a_b"_s);
        EXPECT_THAT(host.sides(main), ElementsAre(16, 18, 22, 24, 32, 48, 64, 128));
        EXPECT_THAT(host.sides(pinned), SizeIs(8));
        program.save(u"gone.md"_s, sheetOf("Back"));
        EXPECT_TRUE(host.eventuallyHas({ main, pinned, pinOf(u"gone.md"_s) }));
        program.save(u"gone.md"_s, sheetOf("Elsewhere"));
        EXPECT_TRUE(Desktop::eventually([&] { return host.toolTip(pinOf(u"gone.md"_s)) == u"Open Elsewhere"_s; }));
        program.remove(u"gone.md"_s);
        EXPECT_TRUE(host.eventuallyHas({ main, pinned }));
    }
    EXPECT_TRUE(Desktop::eventually([&] { return connections() <= before; })) << "no tray, no connections";
}

TEST_F(TrayTest, Clicks_and_rows_reach_the_program)
{
    TrayHost host;
    start();
    ASSERT_TRUE(host.eventuallyHas({ main, pinned }));
    host.click(main);
    ASSERT_TRUE(shows(u"First"_s));
    host.click(main, u"SecondaryActivate"_s);
    host.click(main);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
    host.click(pinned);
    EXPECT_TRUE(shows(u"Tom & a_b"_s));
    EXPECT_THAT(host.layout(main), ElementsAre(u"1 Open Quillory"_s, u"2 "_s, u"5 Quit Quillory"_s)) << "ahead";
    EXPECT_THAT(host.openMenu(pinned), ElementsAre(u"1 Unpin Tom & a__b"_s));
    ASSERT_TRUE(goesAwayTo(terminal.window())) << "the keys don't wait for the end of a menu";
    host.openMenu(main);
    host.choose(main, 2);
    host.choose(main, 3);
    host.choose(main, 77);
    host.choose(main, 1, u"hovered"_s);
    host.choose(main, 1);
    EXPECT_TRUE(isUp());
    host.choose(pinned, 1);
    EXPECT_TRUE(host.eventuallyHas({ main }));
    host.choose(main, 5);
    EXPECT_EQ(program.waitForEnd(), 0);
    EXPECT_THAT(host.names(), IsEmpty());
}

TEST_F(TrayTest, While_a_file_panel_is_open_there_is_no_menu)
{
    program.setHasFolder(false);
    TrayHost host;
    start();
    ASSERT_TRUE(isUp());
    auto const panel = desktop.reader().value();
    auto const area = panel.readingArea();
    int below = 0;
    ASSERT_TRUE(Desktop::eventually([&] {
        constexpr int step = 8, reach = 120;
        below = (below + step) % reach;
        desktop.click({ area.center().x(), area.center().y() + below });
        return desktop.frontWindow() != XCB_NONE && desktop.frontWindow() != panel.window;
    })) << "no dialog came to the front";
    ASSERT_TRUE(host.eventuallyHas({ main }));
    EXPECT_THAT(host.openMenu(main), IsEmpty());
    host.click(main);
    desktop.play(u"Escape"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return desktop.frontWindow() == panel.window; }));
    EXPECT_THAT(host.openMenu(main), SizeIs(3));
}

TEST_F(TrayTest, A_tray_of_windows_is_used_until_another_comes)
{
    EmbeddingTray embedding;
    start();
    for (int turn = 0; turn < 2; ++turn) {
        SCOPED_TRACE(turn);
        ASSERT_TRUE(embedding.eventuallyHas(2));
        desktop.click(EmbeddingTray::middleOf(0));
        ASSERT_TRUE(isUp());
        desktop.click(EmbeddingTray::middleOf(0));
        ASSERT_TRUE(isAwayAndFrontIs(terminal.window()));
        desktop.click(EmbeddingTray::middleOf(1));
        EXPECT_TRUE(shows(u"Tom & a_b"_s));
        ASSERT_TRUE(goesAwayTo(terminal.window()));
        TrayHost const host;
        EXPECT_TRUE(embedding.eventuallyHas(0));
        EXPECT_TRUE(host.eventuallyHas({ main, pinned }));
    }
}

TEST_F(TrayTest, A_thousand_pins_leave_the_program_room)
{
    QStringList sheets;
    for (int number = 1000; number < 2000; ++number) {
        sheets.append(u"%1.md"_s.arg(number));
        program.save(sheets.last(), "# Sheet " + QByteArray::number(number));
    }
    pin(sheets);
    TrayHost host;
    start();
    ASSERT_TRUE(Desktop::eventually([&] { return host.names().size() == 128; }));
    EXPECT_TRUE(comesUp());
    auto const many = connections();
    for (auto const& sheet : sheets)
        program.remove(sheet);
    EXPECT_TRUE(host.eventuallyHas({ main }));
    EXPECT_TRUE(Desktop::eventually([&] { return connections() <= many - 127; }));
}

TEST_F(TrayTest, Without_a_session_bus_the_program_works)
{
    auto const bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    auto const restored = qScopeGuard([&] { qputenv("DBUS_SESSION_BUS_ADDRESS", bus); });
    EmbeddingTray embedding;
    start();
    EXPECT_TRUE(embedding.eventuallyHas(2));
    EXPECT_TRUE(comesUp());
}

}
}
