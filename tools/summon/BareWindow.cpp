// quillory-bare-window: what bench/summoning compares the reader with. A window of its default size that stands ready
// and holds one line of text, toggled by Ctrl+Alt+L: what the toolkit and the window manager need by themselves.

#include "linux/x11/X11Clock.h"
#include "linux/x11/X11Connection.h"
#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11Workspace.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

using namespace Quillory;

namespace {

constexpr std::uint16_t keyL = 37;

class BareWindow final : public QWidget {
public:
    BareWindow()
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    {
        setGeometry(200, 130, 880, 640); // as the reader on such a screen
        winId();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("A bare window"));
    }
};

}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    auto const connection = X11Connection::open();
    if (!connection) {
        std::fprintf(stderr, "quillory-bare-window: %s\n", qPrintable(connection.error()));
        return EXIT_FAILURE;
    }
    X11Clock clock;
    auto const flush = [&] {
        xcb_flush(application.nativeInterface<QNativeInterface::QX11Application>()->connection());
    };
    X11HotKeys hotKeys(**connection, clock);
    X11Workspace workspace(**connection, clock, flush);
    BareWindow window;
    auto const toggle = [&](HotKeys::Phase phase) {
        if (phase == HotKeys::Phase::pressed)
            return;
        if (window.isVisible())
            return window.hide();
        workspace.prepareToShow(window.winId());
        window.show();
        window.raise();
        workspace.activateIgnoringOtherApps(window.winId());
    };
    auto const hotKey = hotKeys.registerHotKey(keyL, ModifierFlags::control | ModifierFlags::option, toggle);
    if (!hotKey) {
        std::fputs("quillory-bare-window: Ctrl+Alt+L can't be had.\n", stderr);
        return EXIT_FAILURE;
    }
    return QApplication::exec();
}
