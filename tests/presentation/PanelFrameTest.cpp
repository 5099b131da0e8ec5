#include "presentation/PanelFrame.h"
#include "presentation/PanelFrameGuard.h"

#include "support/Test.h"

#include <limits>

namespace Quillory {
namespace {

QRectF const screen { 0, 0, 1280, 900 };
QRectF const secondScreen { 1280, 0, 1024, 768 };

// The second is scaled twice: 1024 x 768 points are 2048 x 1536 pixels.
Screens::Screen const main { screen.toRect(), screen.toRect(), screen.toRect() };
Screens::Screen const second { secondScreen.toRect(), secondScreen.toRect(), { 1280, 0, 2048, 1536 } };

TEST(PanelFrame, Its_text_reads_back_as_the_very_same_numbers)
{
    QRectF const frames[] { { 10, 20, 880, 640 }, { -1280, 0.1, 440.5, 360 }, { 1.0 / 3, 1e21, 5e-324, 123456789.25 } };
    for (auto const& frame : frames) {
        auto const text = PanelFrame::string(frame);
        auto const back = PanelFrame::fromString(text);
        EXPECT_TRUE(back.x() == frame.x() && back.y() == frame.y() && back.width() == frame.width()
            && back.height() == frame.height())
            << text.toStdString();
    }
    EXPECT_EQ(PanelFrame::string(frames[0]), u"{{10, 20}, {880, 640}}"_s);
    EXPECT_EQ(PanelFrame::string(frames[1]), u"{{-1280, 0.1}, {440.5, 360}}"_s);
    EXPECT_EQ(PanelFrame::fromString(u" { {1,2},{ 3 , 4e2} } "), QRectF(1, 2, 3, 400));
    for (auto const text :
        { u"", u"{{1, 2}, {3}}", u"{{1, 2}, {3, x}}", u"1 2 3 4", u"{{1, 2}, {3, 4}} 5", u"{{,}, {,}}" })
        EXPECT_EQ(PanelFrame::fromString(text), QRectF()) << QStringView(text).toUtf8().toStdString();
}

TEST(PanelFrame, A_show_takes_a_usable_stored_frame_and_brings_it_on_screen)
{
    struct Row {
        char const* story;
        std::optional<QString> stored;
        QPointF lastOrigin;
        QList<Screens::Screen> screens; // the last is the one to show on
        QRectF frame;
    };
    QPointF const last { 100, 80 };
    Row const rows[] {
        { "nothing stored", std::nullopt, last, { main }, { 100, 80, 880, 640 } },
        { "nothing stored, moved out", std::nullopt, { 1000, 800 }, { main }, { 400, 260, 880, 640 } },
        { "usable", u"{{10, 20}, {500, 400}}"_s, last, { main }, { 10, 20, 500, 400 } },
        { "the smallest", u"{{10, 20}, {440, 360}}"_s, last, { main }, { 10, 20, 440, 360 } },
        { "too narrow", u"{{10, 20}, {439, 360}}"_s, last, { main }, { 100, 80, 880, 640 } },
        { "too low", u"{{10, 20}, {440, 359.9}}"_s, last, { main }, { 100, 80, 880, 640 } },
        { "of no size", u"{{0, 0}, {0, 0}}"_s, last, { main }, { 100, 80, 880, 640 } },
        { "no rectangle", u"yes"_s, last, { main }, { 100, 80, 880, 640 } },
        { "not finite", u"{{nan, 0}, {500, 400}}"_s, last, { main }, { 100, 80, 880, 640 } },
        { "endless", u"{{0, 0}, {inf, 400}}"_s, last, { main }, { 100, 80, 880, 640 } },
        { "on a screen that is gone", u"{{1300, -50}, {500, 400}}"_s, last, { main }, { 780, 0, 500, 400 } },
        { "far away", u"{{-1e300, 1e300}, {500, 400}}"_s, last, { main }, { 0, 500, 500, 400 } },
        { "larger than the screen", u"{{50, 50}, {3000, 2000}}"_s, last, { main }, screen },
        { "to a screen that does not begin at 0", u"{{50, 500}, {500, 400}}"_s, last, { second },
            { 1280, 368, 500, 400 } },
        { "in the same place of another screen", u"{{50, 60}, {500, 400}}"_s, last, { main, second },
            { 1330, 60, 500, 400 } },
        { "and back", u"{{1330, 60}, {500, 400}}"_s, last, { second, main }, { 50, 60, 500, 400 } },
        { "on its own screen", u"{{1330, 60}, {500, 400}}"_s, last, { main, second }, { 1330, 60, 500, 400 } },
        { "without a screen", u"{{-50, 500}, {500, 400}}"_s, last, {}, { -50, 500, 500, 400 } },
    };
    for (auto const& [story, stored, lastOrigin, screens, frame] : rows) {
        auto const target = screens.isEmpty() ? std::nullopt : std::optional(screens.last());
        EXPECT_EQ(PanelFrame::forShow(stored, lastOrigin, screens, target), frame) << story;
    }
    EXPECT_EQ(PanelFrame::centered(secondScreen), QRectF(1352, 64, 880, 640));
}

TEST(PanelFrame, The_users_screen_is_where_the_front_window_is_or_else_the_pointer)
{
    QList<Screens::Screen> const both { main, second };
    EXPECT_EQ(PanelFrame::usersScreen(both, QRect(2000, 1000, 300, 300), { 10, 10 }), second);
    EXPECT_EQ(PanelFrame::usersScreen(both, QRect(1100, 10, 200, 300), { 1400, 10 }), main);
    EXPECT_EQ(PanelFrame::usersScreen(both, std::nullopt, { 1400, 10 }), second);
    EXPECT_EQ(PanelFrame::usersScreen(both, QRect(-900, -900, 20, 20), { -1, -1 }), main);
    EXPECT_EQ(PanelFrame::usersScreen({}, QRect(0, 0, 20, 20), {}), std::nullopt);
    EXPECT_EQ(PanelFrame::screenOf(both, { 1200, 0, 440, 360 }), second);
    EXPECT_EQ(PanelFrame::screenOf(both, { 5000, 0, 440, 360 }), main);
}

TEST(PanelFrameGuard, Only_what_changes_after_the_panel_has_come_to_rest_is_the_users_doing)
{
    using enum PanelFrameGuard::Until;
    QRect const asked { 10, 20, 500, 400 }, corrected { 60, 20, 500, 400 }, users { 90, 90, 500, 400 };
    PanelFrameGuard guard;
    for (auto const until : { inFront, nextFrame }) {
        guard.place(until);
        guard.frameIs(corrected);
        guard.settle(corrected); // to the front, which tells nothing of a window that is there already
        guard.frameIs(corrected);
        EXPECT_FALSE(guard.isMovedByUser());
        guard.frameIs(users);
        guard.settle(users);
        guard.frameIs(corrected);
        EXPECT_TRUE(guard.isMovedByUser()) << "also when moved back";
    }
    guard.place(inFront);
    guard.frameIs(asked);
    guard.frameIs(corrected);
    guard.settle(corrected);
    EXPECT_FALSE(guard.isMovedByUser());
}

}
}
