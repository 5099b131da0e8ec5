#include "presentation/PanelFrame.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

namespace Quillory::PanelFrame {

namespace {

QString shortest(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

double area(QRectF const& rectangle)
{
    return rectangle.isEmpty() ? 0 : rectangle.width() * rectangle.height();
}

// The one that shares most with `frame`; absent when none shares anything.
std::optional<Screens::Screen> mostOf(
    QList<Screens::Screen> const& screens, QRectF const& frame, QRect Screens::Screen::* extent)
{
    auto const shared = [&](auto const& screen) { return area(QRectF(screen.*extent).intersected(frame)); };
    auto const most = std::ranges::max_element(screens, {}, shared);
    if (most == screens.end() || shared(*most) == 0)
        return std::nullopt;
    return *most;
}

std::optional<Screens::Screen> mainScreen(QList<Screens::Screen> const& screens)
{
    return screens.isEmpty() ? std::nullopt : std::optional(screens.first());
}

}

QString string(QRectF const& frame)
{
    return QStringLiteral("{{%1, %2}, {%3, %4}}")
        .arg(shortest(frame.x()), shortest(frame.y()), shortest(frame.width()), shortest(frame.height()));
}

QRectF fromString(QStringView text)
{
    static QRegularExpression const form(QStringLiteral(
        R"(^\s*\{\s*\{\s*([^\s,{}]+)\s*,\s*([^\s,{}]+)\s*\}\s*,\s*\{\s*([^\s,{}]+)\s*,\s*([^\s,{}]+)\s*\}\s*\}\s*$)"));
    auto const match = form.match(text.toString());
    if (!match.hasMatch())
        return {};
    std::array<double, 4> numbers {};
    for (int group = 1; auto& number : numbers) {
        bool isNumber = false;
        number = QLocale::c().toDouble(match.capturedView(group++), &isNumber);
        if (!isNumber)
            return {};
    }
    return { numbers[0], numbers[1], numbers[2], numbers[3] };
}

bool isUsable(QRectF const& frame)
{
    std::array const numbers { frame.x(), frame.y(), frame.width(), frame.height() };
    return std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); })
        && frame.width() >= minimumSize.width() && frame.height() >= minimumSize.height();
}

QRectF clamped(QRectF const& frame, QRectF const& visible)
{
    auto const width = std::min(frame.width(), visible.width());
    auto const height = std::min(frame.height(), visible.height());
    auto const x = std::max(visible.left(), std::min(visible.right() - width, frame.x()));
    auto const y = std::max(visible.top(), std::min(visible.bottom() - height, frame.y()));
    return { x, y, width, height };
}

QRectF centered(QRectF const& visible)
{
    QRectF frame({}, defaultSize);
    frame.moveCenter(visible.center());
    return frame;
}

QRectF forShow(std::optional<QString> const& stored, QPointF lastOrigin, QList<Screens::Screen> const& screens,
    std::optional<Screens::Screen> const& target)
{
    QRectF frame(lastOrigin, defaultSize);
    if (stored) {
        if (auto const saved = fromString(*stored); isUsable(saved))
            frame = saved;
    }
    if (!target)
        return frame;
    if (auto const home = mostOf(screens, frame, &Screens::Screen::frame))
        frame.translate(target->frame.topLeft() - home->frame.topLeft());
    return clamped(frame, target->visibleFrame);
}

std::optional<Screens::Screen> usersScreen(
    QList<Screens::Screen> const& screens, std::optional<QRect> const& front, QPoint pointer)
{
    if (auto const withFront = front ? mostOf(screens, *front, &Screens::Screen::pixels) : std::nullopt)
        return withFront;
    auto const withPointer = mostOf(screens, QRect(pointer, QSize(1, 1)), &Screens::Screen::frame);
    return withPointer ? withPointer : mainScreen(screens);
}

std::optional<Screens::Screen> screenOf(QList<Screens::Screen> const& screens, QRect const& frame)
{
    auto const withMost = mostOf(screens, frame, &Screens::Screen::frame);
    return withMost ? withMost : mainScreen(screens);
}

}
