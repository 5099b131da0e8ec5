#include "linux/qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <memory>
#include <utility>

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

// Told in a later turn, when the toolkit has moved what stood on a screen that is gone.
Registration QtScreens::observeChanges(std::function<void()> changed)
{
    auto observer = std::make_unique<QObject>();
    auto* const context = observer.get();
    auto const later = [context, changed = std::move(changed)] {
        QMetaObject::invokeMethod(context, changed, Qt::QueuedConnection);
    };
    auto const watch = [context, later](QScreen* screen) {
        QObject::connect(screen, &QScreen::availableGeometryChanged, context, later);
    };
    for (auto* const screen : QGuiApplication::screens())
        watch(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, context, watch);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, context, later);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, context, later);
    return Registration([observer = std::move(observer)] { });
}

QPoint QtScreens::pointer() const
{
    return QCursor::pos();
}

}
