#include "presentation/SummoningDesk.h"

#include "support/Test.h"

namespace Quillory {

void PrintTo(StatusMenuRow const& row, std::ostream* out)
{
    *out << row.number << (row.isEnabled ? " " : " off ") << row.title.toStdString() << ' ' << row.key.toStdString();
}

namespace {

using Attention = StatusItemLook::Attention;

// A library of three sheets, of which two are pinned and one of these is not there.
class MenuBarItemsTest : public Test {
protected:
    MenuBarItemsTest()
    {
        desk.services.defaults.setValue(
            u"pinnedSheets"_s, QJsonObject { { folder, QJsonArray { u"git.md"_s, u"gone.md"_s } } });
        desk.library.connect(folder);
        load({ { u"a.md"_s, u"A"_s }, { u"git.md"_s, u"Git\nnow"_s } });
        desk.panel.takeCalls();
    }

    void load(std::initializer_list<std::pair<QString, QString>> sheets)
    {
        QList<Sheet> loaded;
        for (auto const& [id, title] : sheets) {
            loaded.append(Sheet {});
            loaded.last().id = id;
            loaded.last().title = title;
        }
        desk.library.applyLoadedSheets(loaded, desk.library.generation);
    }

    void restart(std::optional<MenuBarUpdates> updates)
    {
        desk.updates = std::move(updates);
        desk.make();
    }
    MenuBarUpdates updater()
    {
        return { [this] { return isAvailable; }, [this] { return canCheck; },
            [this] { desk.panel.calls.append(u"check"_s); },
            [this](auto changed) { return changes.add(std::move(changed)); } };
    }
    QString pinOf(QString const& id) const { return u"Quillory.Pin."_s + folder + u'.' + id; }

    SummoningDesk desk;
    FakeStatusBar& bar = desk.statusBar;
    QString const folder = desk.services.root.path();
    QString const main = u"Quillory.Main"_s;
    QString const git = pinOf(u"git.md"_s);
    bool isAvailable = false;
    bool canCheck = true;
    Observers<void()> changes;
};

TEST_F(MenuBarItemsTest, The_programs_item_shows_whether_an_update_waits)
{
    EXPECT_EQ(bar.look(main),
        (StatusItemLook { main, {}, Attention::none, u"Quillory"_s, u"Open Quillory to read your cheat sheets"_s,
            u"Open Quillory"_s }));
    restart(updater());
    for (auto const& [available, toolTip] :
        { std::pair { false, u"Quillory"_s }, { true, u"Quillory — Update available"_s }, { false, u"Quillory"_s } }) {
        isAvailable = available;
        changes.tell();
        EXPECT_EQ(bar.look(main).toolTip, toolTip);
        EXPECT_EQ(bar.look(main).attention, available ? Attention::waiting : Attention::none);
    }
    isAvailable = true;
    restart(updater());
    EXPECT_EQ(bar.look(main).attention, Attention::waiting) << "from the start";
}

TEST_F(MenuBarItemsTest, Pins_follow_the_library)
{
    EXPECT_THAT(bar.names(), ElementsAre(main, git));
    EXPECT_EQ(bar.look(git),
        (StatusItemLook { git, QStringList { u"G"_s, u"i"_s, u"t"_s }, Attention::none, u"Git now"_s, u"Open Git now"_s,
            u"Open Git now"_s }));
    struct Row {
        QString title;
        QStringList face;
    };
    for (auto const& [title, face] :
        { Row { u"👩‍👩‍👧🇩🇪é!"_s, { u"👩‍👩‍👧"_s, u"🇩🇪"_s, u"é"_s } },
            { u"a"_s, { u"a"_s } }, { {}, {} } }) {
        load({ { u"git.md"_s, title } });
        EXPECT_EQ(bar.look(git).characters, face);
    }
    load({ { u"a.md"_s, u"A"_s } });
    EXPECT_THAT(bar.names(), ElementsAre(main)) << "its file went";
    load({ { u"gone.md"_s, u"Back"_s }, { u"git.md"_s, u"Git"_s } });
    EXPECT_THAT(bar.names(), ElementsAre(main, git, pinOf(u"gone.md"_s)));
    desk.library.togglePin(u"gone.md"_s);
    EXPECT_THAT(bar.names(), ElementsAre(main, git));
    desk.library.connect(desk.services.root.path("other"));
    EXPECT_THAT(bar.names(), ElementsAre(main));
}

TEST_F(MenuBarItemsTest, Menus_are_made_for_each_click)
{
    StatusMenuRow const open { 1, u"Open Quillory"_s, true, {} }, quit { 5, u"Quit Quillory"_s, true, u"q"_s };
    StatusMenuRow const first { 2, {}, true, {} }, second { 4, {}, true, {} };
    EXPECT_THAT(bar.menu(main), ElementsAre(open, first, quit));
    restart(updater());
    EXPECT_THAT(
        bar.menu(main), ElementsAre(open, first, StatusMenuRow { 3, u"Check for Updates…"_s, true, {} }, second, quit));
    isAvailable = true;
    canCheck = false;
    desk.coordinator->open();
    EXPECT_THAT(
        bar.menu(main), ElementsAre(open, first, StatusMenuRow { 3, u"Update available…"_s, false, {} }, second, quit));
    EXPECT_THAT(bar.menu(git), ElementsAre(StatusMenuRow { 1, u"Unpin Git now"_s, true, {} }));
}

TEST_F(MenuBarItemsTest, What_clicks_and_rows_do)
{
    restart(updater());
    desk.panel.takeCalls();
    using Act = std::function<void()>;
    QStringList const opening { u"dismissTooltips"_s, u"lower level"_s, u"show"_s };
    QStringList const closing { u"dismissTooltips"_s, u"savePanelFrame"_s, u"lower level"_s, u"orderOut"_s };
    struct Row {
        char const* event;
        Act act;
        QStringList calls;
    };
    Row const rows[] {
        { "the icon", [&] { bar.click(main); }, opening },
        { "the icon again", [&] { bar.click(main); }, closing },
        { "the first row", [&] { bar.choose(main, MenuBarItems::openRow); }, opening },
        { "and again", [&] { bar.choose(main, MenuBarItems::openRow); }, closing },
        { "a separator", [&] { bar.choose(main, MenuBarItems::firstSeparator); }, {} },
        { "updates", [&] { bar.choose(main, MenuBarItems::updateRow); }, { u"check"_s } },
        { "the end", [&] { bar.choose(main, MenuBarItems::quitRow); }, { u"quit"_s } },
        { "a pin", [&] { bar.click(git); }, opening },
        { "a pin of what is up", [&] { bar.click(git); }, { u"makeKeyAndOrderFront"_s } },
        { "a pin of what is minimized", [&] { desk.panel.minimized = true, bar.click(git); },
            { u"dismissTooltips"_s, u"savePanelFrame"_s, u"lower level"_s, u"show"_s } },
        { "a peek", [&] { desk.pressPeek(), desk.panel.takeCalls(); }, {} },
        { "a pin during it", [&] { bar.click(git); }, { u"makeKeyAndOrderFront"_s } },
        { "the end of the peek", [&] { desk.releasePeek(); }, closing },
    };
    for (auto const& [event, act, calls] : rows) {
        SCOPED_TRACE(event);
        act();
        EXPECT_EQ(desk.panel.takeCalls(), calls);
    }
    EXPECT_EQ(desk.library.selectedID.value(), u"git.md"_s);
    bar.choose(git, MenuBarItems::unpinRow);
    EXPECT_THAT(bar.names(), ElementsAre(main));
    EXPECT_THAT(desk.library.pinnedIDs.value(), ElementsAre(u"gone.md"_s));
}

TEST_F(MenuBarItemsTest, While_a_file_panel_is_open_nothing_happens_and_no_menu_comes_up)
{
    desk.presentPicker();
    desk.panel.takeCalls();
    bar.click(main);
    bar.click(git);
    bar.choose(main, MenuBarItems::openRow);
    EXPECT_THAT(desk.panel.takeCalls(), IsEmpty());
    EXPECT_EQ(desk.library.selectedID.value(), u"a.md"_s);
    EXPECT_THAT(bar.menu(main), IsEmpty());
    EXPECT_THAT(bar.menu(git), IsEmpty());
    desk.services.openPanels.dismiss();
    EXPECT_THAT(bar.menu(main), SizeIs(3));
}

}
}
