#include "ScreensContract.h"

#include "platform/linux/qt/QtScreens.h"
#include "support/EventLoop.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QProcess>

namespace Quillory {
namespace {

// Monitors that the server only claims to have, side by side on its one screen.
class X11ScreensDesk final : public ScreensDesk {
public:
    ~X11ScreensDesk() override { connect({}); }

    Screens& screens() override { return m_screens; }

    void connect(QList<QRect> const& frames) override
    {
        for (int old = 0; old < m_connected; ++old)
            xrandr({ QStringLiteral("--delmonitor"), name(old) });
        m_connected = static_cast<int>(frames.size());
        for (int number = 0; number < m_connected; ++number) {
            auto const& frame = frames[number];
            auto const geometry = QStringLiteral("%1/170x%2/240+%3+%4");
            // The first one takes the place of what the server has by itself.
            xrandr({ QStringLiteral("--setmonitor"), name(number),
                geometry.arg(frame.width()).arg(frame.height()).arg(frame.x()).arg(frame.y()),
                number == 0 ? QStringLiteral("screen") : QStringLiteral("none") });
        }
    }

    void movePointer(QPoint place) override { m_mouse->movePointer(place.x(), place.y()); }

    bool comesTrue(std::function<bool()> const& condition) override { return m_loop.runUntil(condition); }

private:
    static QString name(int number) { return QStringLiteral("monitor-%1").arg(number); }
    static void xrandr(QStringList const& arguments)
    {
        EXPECT_EQ(QProcess::execute(QStringLiteral("xrandr"), arguments), 0);
    }

    EventLoop m_loop;
    QtScreens m_screens;
    std::unique_ptr<SyntheticKeyboard> m_mouse = SyntheticKeyboard::open().value();
    int m_connected = 0;
};

INSTANTIATE_TEST_SUITE_P(X11, ScreensContract, deskOf<X11ScreensDesk>("x11"));

}
}
