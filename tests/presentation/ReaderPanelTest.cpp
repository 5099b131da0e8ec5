#include "presentation/ReaderPanel.h"
#include "presentation/PanelFrame.h"
#include "reader/BarButton.h"
#include "reader/NativeReader.h"

#include "support/FakeCompositing.h"
#include "support/FakeLibraryServices.h"
#include "support/FakePanelWindow.h"
#include "support/FakeScreens.h"
#include "support/Test.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

namespace Quillory {
namespace {

constexpr auto frameKey = ReaderPanel::frameKey;

class ReaderPanelTest : public Test {
protected:
    ReaderPanelTest()
    {
        // Also the moves that come before anything is asked for.
        panel.onMoved = panel.onResized = [this] { panel.savePanelFrame(); };
        panel.onClosing = [this] { closings.append(panel.isVisible()); };
        panel.onDismiss = [this] { panel.orderOut(); };
    }

    void show(PanelPresence presence = PanelPresence::resident)
    {
        panel.show(presence);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    }
    void connect(QByteArray const& sheet)
    {
        services.root.write("library/a.md", sheet);
        library.connect(services.root.path("library"));
        services.executor.settle();
    }

    // As the window system tells of it.
    void move(QRect const& frame)
    {
        panel.setGeometry(frame);
        QCoreApplication::processEvents();
    }

    ReaderPanel::Services panelServices()
    {
        return { services.defaults, services.workspace, screens, compositing,
            { services.executor, services.clipboard, notifications, services.announcements }, [this](std::uint64_t) {
                auto made = std::make_unique<FakePanelWindow>();
                window = made.get();
                return made;
            } };
    }

    std::optional<QString> stored() const { return services.defaults.get<QString>(frameKey); }

    FakeLibraryServices services;
    NotificationCenter notifications;
    LibraryStore library { services.services(), LibraryStore::RestoreFolder::no };
    FakeScreens screens { { QRect(0, 0, 1280, 900) } };
    FakeCompositing compositing;
    FakePanelWindow* window = nullptr;
    ReaderPanel panel { library, panelServices() };
    QList<bool> closings;
};

TEST_F(ReaderPanelTest, It_stands_where_it_was_stored_and_only_the_user_changes_that)
{
    show();
    EXPECT_EQ(panel.geometry(), QRect(200, 130, 880, 640)) << "in the middle at first";
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&panel)->role(), QAccessible::Window);

    panel.savePanelFrame();
    EXPECT_EQ(stored(), std::nullopt) << "as when it is closed where it came up";

    move({ 30, 40, 500, 400 });
    EXPECT_EQ(stored(), u"{{30, 40}, {500, 400}}"_s);
    panel.orderOut();
    show();
    EXPECT_EQ(panel.geometry(), QRect(30, 40, 500, 400));

    panel.orderOut();
    screens.connect({ QRect(2000, 0, 1024, 768) });
    show();
    EXPECT_EQ(panel.geometry(), QRect(2000, 40, 500, 400));
    EXPECT_EQ(stored(), u"{{30, 40}, {500, 400}}"_s);

    screens.connect({ QRect(0, 0, 1280, 900) });
    EXPECT_EQ(panel.geometry(), QRect(780, 40, 500, 400)) << "its screen went while it was up";
    EXPECT_EQ(stored(), u"{{30, 40}, {500, 400}}"_s);

    screens.connect({ QRect(0, 0, 1280, 900), QRect(2000, 0, 1024, 768) });
    services.workspace.open({ u"editor"_s, 1 });
    services.workspace.bringToFront(1);
    services.workspace.frame = QRect(2100, 10, 300, 300);
    show();
    EXPECT_EQ(panel.geometry(), QRect(2030, 40, 500, 400)) << "to the screen that the user went to";
    EXPECT_EQ(stored(), u"{{30, 40}, {500, 400}}"_s);

    panel.orderOut();
    services.defaults.setValue(frameKey, u"{{30, 40}, {439, 400}}"_s);
    show();
    EXPECT_EQ(panel.geometry(), QRect(2030, 40, 880, 640)) << "the default size where it stood last";
}

TEST_F(ReaderPanelTest, Its_corners_are_round_while_a_compositor_runs)
{
    auto const areRound = [&] {
        auto const picture = panel.grab().toImage();
        auto const right = picture.width() - 1, bottom = picture.height() - 1;
        auto const outline = picture.pixel(0, bottom / 2);
        auto const isRound = [&](QPoint corner) { return picture.pixel(corner) != outline; };
        QList<QPoint> const corners { { 0, 0 }, { right, 0 }, { 0, bottom }, { right, bottom } };
        auto const count = std::ranges::count_if(corners, isRound);
        EXPECT_TRUE(count == 0 || count == corners.size()) << count;
        return count > 0;
    };
    EXPECT_TRUE(areRound());
    compositing.setRunning(false);
    EXPECT_FALSE(areRound());
    compositing.setRunning(true);
    panel.resize(500, 400);
    EXPECT_TRUE(areRound());
}

TEST_F(ReaderPanelTest, Its_shadow_is_no_part_of_its_frame)
{
    auto const whole = [&] { return panel.frameGeometry(); };
    show();
    move({ 30, 40, 500, 400 });
    compositing.setRunning(true, true);
    QCoreApplication::processEvents();
    EXPECT_EQ(whole(), QRect(30, 40, 500, 400).marginsAdded(window->shadow)) << "while it is up";
    EXPECT_FALSE(window->shadow.isNull());
    EXPECT_EQ(stored(), u"{{30, 40}, {500, 400}}"_s);

    QImage picture(panel.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    panel.render(&picture);
    auto const beside = [&](int distance) { return qAlpha(picture.pixel(window->shadow.left() - distance, 200)); };
    EXPECT_GT(beside(1), beside(12));
    EXPECT_GT(beside(12), 0);
    EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0);

    move(QRect(50, 60, 440, 360).marginsAdded(window->shadow));
    EXPECT_EQ(stored(), u"{{50, 60}, {440, 360}}"_s) << "where the user has put it";
    EXPECT_EQ(panel.minimumSize(), whole().size());
    panel.orderOut();
    show();
    EXPECT_EQ(whole(), QRect(50, 60, 440, 360).marginsAdded(window->shadow));

    compositing.setRunning(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(whole(), QRect(50, 60, 440, 360));
    EXPECT_TRUE(window->shadow.isNull());
    EXPECT_EQ(stored(), u"{{50, 60}, {440, 360}}"_s);
}

TEST_F(ReaderPanelTest, A_compositor_that_comes_later_gets_another_window_once_the_panel_is_hidden)
{
    compositing.setRunning(false);
    ReaderPanel later { library, panelServices() };
    later.show(PanelPresence::resident);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&later));
    auto const frame = later.geometry();
    auto const number = later.winId();
    compositing.setRunning(true, true);
    EXPECT_EQ(later.winId(), number) << "not while it is up";
    EXPECT_TRUE(window->shadow.isNull());
    later.orderOut();
    services.executor.runPosted();
    EXPECT_NE(later.winId(), number);
    later.show(PanelPresence::resident);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&later));
    EXPECT_EQ(later.geometry(), frame.marginsAdded(window->shadow));
    EXPECT_FALSE(window->shadow.isNull());
    QTest::mouseMove(later.windowHandle(), { window->shadow.left() + 1, 200 });
    ASSERT_TRUE(QGuiApplication::overrideCursor()) << "its edges are taken as before";
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::SizeHorCursor);
}

TEST_F(ReaderPanelTest, What_the_window_manager_has_to_do_holds_up_neither_the_first_picture_nor_the_end)
{
    panel.show(PanelPresence::peek);
    EXPECT_THAT(window->calls, ElementsAre(u"willShow"_s));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    services.executor.runPosted();
    EXPECT_TRUE(window->isAbove() && window->isEverywhere());
    panel.applyPeekLevel(PanelPresence::resident);
    panel.orderOut();
    services.executor.runPosted();
    EXPECT_THAT(window->calls, ElementsAre(u"willShow"_s, u"didShow"_s, u"didHide"_s)) << "no level while it is up";
    EXPECT_EQ(services.workspace.preparations.size(), 1U);
    EXPECT_EQ(services.workspace.ownActivations.size(), 1U);

    panel.show(PanelPresence::resident);
    services.executor.advance(std::chrono::seconds(1)); // a window system that shows no picture
    EXPECT_FALSE(window->isAbove());
    panel.applyPeekLevel(PanelPresence::peek);
    EXPECT_TRUE(window->isAbove() && window->isEverywhere()) << "a peek at once";
    panel.applyPeekLevel(PanelPresence::resident);
    services.executor.runPosted();
    EXPECT_FALSE(window->isAbove() || window->isEverywhere());

    for (bool const isFetchable : { true, false }) {
        services.workspace.canFetch = isFetchable;
        window->calls.clear();
        panel.show(PanelPresence::resident);
        EXPECT_EQ(window->calls.contains(u"didHide"_s), !isFetchable) << "from another workspace";
        window->calls.clear();
        QWidget other; // has the keyboard
        other.show();
        other.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
        panel.makeKeyAndOrderFront(); // the first call after a show is part of it
        panel.makeKeyAndOrderFront();
        EXPECT_EQ(window->calls.contains(u"didHide"_s), !isFetchable) << "from behind another window";
    }
}

TEST_F(ReaderPanelTest, A_drag_of_a_peek_moves_the_frame_and_each_edge_alone_down_to_the_smallest)
{
    show(PanelPresence::peek);
    QRect const frame(300, 200, 600, 500);
    struct Case {
        QPoint from, by;
        QRect frame;
    };
    QPoint const far(5000, 5000);
    for (auto const& [from, by, expected] : { Case { { 100, 15 }, { 30, -40 }, frame.translated(30, -40) },
             { { 1, 1 }, { -20, 30 }, frame.adjusted(-20, 30, 0, 0) },
             { { 598, 498 }, { 20, 30 }, frame.adjusted(0, 0, 20, 30) },
             { { 1, 250 }, { 20, 30 }, frame.adjusted(20, 0, 0, 0) }, { { 300, 498 }, -far, { 300, 200, 600, 360 } },
             { { 598, 250 }, -far, { 300, 200, 440, 500 } }, { { 1, 1 }, far, { 460, 340, 440, 360 } } }) {
        panel.orderOut();
        services.defaults.setValue(frameKey, PanelFrame::string(frame));
        show(PanelPresence::peek);
        auto* const native = panel.windowHandle();
        QTest::mousePress(native, Qt::LeftButton, {}, from);
        QTest::mouseMove(native, from + by);
        EXPECT_EQ(panel.geometry(), expected) << from.x() << ", " << from.y();
        QTest::mouseRelease(native, Qt::LeftButton, {}, frame.topLeft() + from + by - panel.pos());
        QTest::mouseMove(native, { 200, 200 });
        EXPECT_EQ(panel.geometry(), expected) << "once it is let go";
    }
}

TEST_F(ReaderPanelTest, Each_show_begins_with_a_view_like_a_new_one)
{
    connect("# Sheet\n\nword and word\n");
    show();
    auto& text = *panel.findChild<ReaderTextView*>();
    text.selectAll();
    panel.orderOut();
    show();
    EXPECT_TRUE(text.selection().isEmpty());
}

TEST_F(ReaderPanelTest, A_close_is_told_once_and_while_it_is_still_up)
{
    show();
    auto const native = panel.winId();
    for (auto* const button : panel.findChildren<BarButton*>()) {
        if (button->accessibleName() == u"Close"_s)
            button->click();
    }
    EXPECT_EQ(panel.internalWinId(), native) << "the window manager has been told what it is";
    EXPECT_THAT(closings, ElementsAre(true));
    EXPECT_FALSE(panel.isVisible());
    for (auto* const widget :
        { static_cast<QWidget*>(&panel), static_cast<QWidget*>(panel.findChild<ReaderTextView*>()) }) {
        show();
        EXPECT_TRUE(panel.isVisible());
        QTest::keyClick(widget, Qt::Key_Escape);
        EXPECT_FALSE(panel.isVisible());
    }
    EXPECT_EQ(closings.size(), 1);
}

TEST_F(ReaderPanelTest, The_keyboard_goes_to_the_text_unless_a_search_field_is_open)
{
    connect("# Sheet\n");
    for (bool const isSearching : { true, false }) {
        library.librarySearchVisible.assignAs<ReaderView>(isSearching);
        show();
        panel.setFocus();
        panel.focusReader();
        EXPECT_EQ(panel.focusWidget(), &panel) << "not at once";
        services.executor.runPosted();
        EXPECT_EQ(panel.focusWidget() == &panel, isSearching);
        panel.orderOut();
    }
}

TEST_F(ReaderPanelTest, A_panel_that_comes_before_the_sheets_gives_the_keyboard_to_the_text_once_they_are_there)
{
    services.root.write("library/a.md", "# Sheet\n");
    library.connect(services.root.path("library"));
    panel.show(PanelPresence::resident);
    for (auto const* const label : panel.findChildren<QLabel*>())
        EXPECT_TRUE(label->text() != u"No cheat sheets" || !label->isVisible());
    services.executor.runPosted(); // before the window system makes it the active window
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    ASSERT_TRUE(library.sheets.value().isEmpty());
    services.executor.settle();
    EXPECT_EQ(panel.focusWidget(), panel.findChild<ReaderTextView*>());
}

TEST_F(ReaderPanelTest, Another_palette_gets_through_to_text_and_symbols)
{
    services.root.write("library/a.quillory.json",
        R"({"schemaVersion":1,"title":"A","icon":"gone.png","sections":[{"id":"s","title":"S","entries":[]}]})");
    library.connect(services.root.path("library"));
    services.executor.settle();
    show();
    QApplication::setPalette(QPalette(Qt::black, Qt::black));
    QCoreApplication::processEvents();
    EXPECT_EQ(panel.findChild<ReaderTextView*>()->colors().appearance, ReaderColors::Appearance::dark);
    int symbols = 0;
    for (auto const* const label : panel.findChildren<QLabel*>()) {
        auto const symbol = label->pixmap().toImage();
        symbols += symbol.isNull() ? 0 : 1;
        for (int x = 0; x < symbol.width(); ++x) {
            auto const color = symbol.pixelColor(x, symbol.height() / 2);
            EXPECT_TRUE(color.alpha() < 255 || color.lightness() > 128);
        }
    }
    EXPECT_GT(symbols, 0);
    QApplication::setPalette(QPalette());
}

}
}
