#include "linux/qt/QtScreens.h"
#include "support/EventLoop.h"
#include "support/Test.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QProcess>

namespace Quillory {
namespace {

// Monitors that the server only claims to have, side by side on its one screen.
class ScreensOnX11 : public Test {
protected:
    ~ScreensOnX11() override { connect({}); }

    void connect(QList<QRect> const& frames)
    {
        for (int old = 0; old < m_connected; ++old)
            xrandr({ u"--delmonitor"_s, name(old) });
        m_connected = static_cast<int>(frames.size());
        for (int number = 0; number < m_connected; ++number) {
            auto const& frame = frames[number];
            // The first one takes the place of what the server has by itself.
            xrandr({ u"--setmonitor"_s, name(number),
                u"%1/170x%2/240+%3+%4"_s.arg(frame.width()).arg(frame.height()).arg(frame.x()).arg(frame.y()),
                number == 0 ? u"screen"_s : u"none"_s });
        }
    }

    bool areConnected(QList<QRect> const& frames)
    {
        return loop.runUntil([&] {
            QList<Screens::Screen> expected;
            for (auto const& frame : frames)
                expected.append({ frame, frame, frame });
            return screens.screens() == expected;
        });
    }

    EventLoop loop;
    QtScreens screens;
    std::unique_ptr<SyntheticKeyboard> mouse = SyntheticKeyboard::open().value();

private:
    static QString name(int number) { return u"monitor-%1"_s.arg(number); }
    static void xrandr(QStringList const& arguments) { EXPECT_EQ(QProcess::execute(u"xrandr"_s, arguments), 0); }

    int m_connected = 0;
};

TEST_F(ScreensOnX11, Screens_that_come_and_go_are_told_until_nobody_observes)
{
    QRect const left { 0, 0, 640, 900 }, right { 640, 0, 640, 900 };
    int changes = 0;
    auto observation = screens.observeChanges([&] { ++changes; });
    connect({ left, right });
    EXPECT_TRUE(areConnected({ left, right }));
    EXPECT_TRUE(loop.runUntil([&] { return changes > 0; }));
    observation.end();
    int const told = changes;
    connect({ left });
    EXPECT_TRUE(areConnected({ left }));
    EXPECT_EQ(changes, told);
    for (auto const place : { QPoint(3, 4), QPoint(600, 800) }) {
        mouse->movePointer(place.x(), place.y());
        EXPECT_TRUE(loop.runUntil([&] { return screens.pointer() == place; }));
    }
}

}
}
