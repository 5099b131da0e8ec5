#include "linux/qt/QtScreens.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include <QProcess>

namespace Quillory {
namespace {

// Monitors that the server only claims to have, side by side on its one screen.
TEST(ScreensOnX11, Screens_that_come_and_go_are_told_until_nobody_observes)
{
    EventLoop loop;
    QtScreens screens;
    int changes = 0;
    auto observation = screens.observeChanges([&] { ++changes; });
    QRect const left { 0, 0, 640, 900 }, right { 640, 0, 640, 900 };
    struct Step {
        QStringList change;
        QList<QRect> frames;
    };
    for (auto const& [change, frames] :
        { Step { { u"--setmonitor"_s, u"left"_s, u"640/170x900/240+0+0"_s, u"screen"_s }, { left } },
            { { u"--setmonitor"_s, u"right"_s, u"640/170x900/240+640+0"_s, u"none"_s }, { left, right } },
            { { u"--delmonitor"_s, u"right"_s }, { left } } }) {
        SCOPED_TRACE(change.join(u' ').toStdString());
        ASSERT_EQ(QProcess::execute(u"xrandr"_s, change), 0);
        QList<Screens::Screen> expected;
        for (auto const& frame : frames)
            expected.append({ frame, frame, frame });
        EXPECT_TRUE(loop.runUntil([&] { return screens.screens() == expected; }));
        EXPECT_TRUE(loop.runUntil([&] { return std::exchange(changes, 0) > 0; }));
    }
    observation.end();
    ASSERT_EQ(QProcess::execute(u"xrandr"_s, { u"--delmonitor"_s, u"left"_s }), 0);
    EXPECT_TRUE(loop.runUntil([&] { return screens.screens().front().frame != left; }));
    EXPECT_EQ(changes, 0);
}

}
}
