#include "platform/linux/qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace Quillory {

// The toolkit scales a screen about its upper left corner.
QList<Screens::Screen> QtScreens::screens() const
{
    QList<Screen> screens;
    auto const* const main = QGuiApplication::primaryScreen();
    for (auto const* const each : QGuiApplication::screens()) {
        auto const frame = each->geometry();
        QRect const pixels(frame.topLeft(), (QSizeF(frame.size()) * each->devicePixelRatio()).toSize());
        Screen const screen { frame, each->availableGeometry(), pixels };
        screens.insert(each == main ? 0 : screens.size(), screen);
    }
    return screens;
}

QPoint QtScreens::pointer() const
{
    return QCursor::pos();
}

}
