#include "linux/tray/StatusFace.h"

#include "linux/tray/ProgramDrawing.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <vector>

namespace Quillory {

namespace {

constexpr QColor darkInk { 0x20, 0x22, 0x24 };
constexpr QColor lightInk { 0xF4, 0xF4, 0xF2 };
constexpr QColor dotColor { 0xF0, 0x7A, 0x2C };
constexpr double rimOpacity = 0.8;
constexpr double rimShare = 1.0 / 22; // of the side; at least a pixel
constexpr double dotShare = 0.36;
constexpr double largestLetters = 0.74; // the font's size beside the side
// Letters in two rows have to be this much larger before a face is broken.
constexpr double worthBreaking = 1.2;

struct Rows {
    QStringList texts;
    double size = 0; // of the font, in pixels
};

// The rows at the largest size at which they fit.
Rows fitted(QStringList texts, QFont font, double room)
{
    constexpr double sample = 100;
    font.setPixelSize(static_cast<int>(sample));
    QFontMetricsF const metrics(font);
    double width = 1;
    for (auto const& text : texts)
        width = std::max(width, metrics.horizontalAdvance(text));
    auto const height = texts.size() > 1 ? metrics.ascent() * static_cast<double>(texts.size()) : metrics.capHeight();
    return { std::move(texts), sample * std::min(room / width, room / height) };
}

// Wide characters stand in two rows: in one they could not be told apart.
Rows arranged(QStringList const& characters, QFont const& font, double room, double side)
{
    auto one = fitted({ characters.join(QString()) }, font, room);
    one.size = std::min(one.size, side * largestLetters);
    if (characters.size() < 3)
        return one;
    auto const two = fitted({ characters.first(2).join(QString()), characters.sliced(2).join(QString()) }, font, room);
    return two.size > one.size * worthBreaking ? two : one;
}

void drawCharacters(QPainter& painter, QStringList const& characters, QFont font, QColor const& ink, QRectF const& room)
{
    font.setWeight(QFont::DemiBold);
    auto const rows = arranged(characters, font, room.width(), room.width());
    font.setPixelSize(std::max(1, static_cast<int>(rows.size)));
    font.setHintingPreference(QFont::PreferVerticalHinting);
    QFontMetricsF const metrics(font);
    painter.setFont(font);
    painter.setPen(ink);
    auto const count = static_cast<double>(rows.texts.size());
    auto const step = room.height() / count;
    auto const rise = (count > 1 ? metrics.ascent() - metrics.descent() / 2 : metrics.capHeight()) / 2;
    double middle = room.top() + step / 2;
    for (auto const& text : rows.texts) {
        painter.drawText(QPointF(room.center().x() - metrics.horizontalAdvance(text) / 2, middle + rise), text);
        middle += step;
    }
}

void drawDot(QPainter& painter, QRectF const& room)
{
    auto const side = room.width() * dotShare;
    QRectF const dot(room.right() - side, room.top(), side, side);
    auto const gap = side / 4;
    painter.setPen(Qt::NoPen);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setBrush(Qt::black);
    painter.drawEllipse(dot.adjusted(-gap, -gap, gap, gap));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setBrush(dotColor);
    painter.drawEllipse(dot);
}

// The picture on a rim of its own shape.
QImage withRim(QImage const& picture, QColor rim, double width)
{
    QImage shape(picture.size(), picture.format());
    shape.fill(rim);
    {
        QPainter painter(&shape);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.drawImage(0, 0, picture);
    }
    QImage spread(picture.size(), picture.format());
    spread.fill(Qt::transparent);
    {
        QPainter painter(&spread);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        for (double const x : { -width, 0.0, width }) {
            for (double const y : { -width, 0.0, width })
                painter.drawImage(QPointF(x, y), shape);
        }
    }
    QImage result(picture.size(), picture.format());
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setOpacity(rimOpacity);
    painter.drawImage(0, 0, spread);
    painter.setOpacity(1);
    painter.drawImage(0, 0, picture);
    return result;
}

}

StatusFace::Style StatusFace::Style::ofDesktop()
{
    auto const palette = QGuiApplication::palette();
    return { QGuiApplication::font(),
        palette.color(QPalette::WindowText).lightnessF() > palette.color(QPalette::Window).lightnessF() };
}

QImage StatusFace::drawn(StatusItemLook const& look, Style const& style, int side)
{
    auto const& ink = style.isLightInk ? lightInk : darkInk;
    auto const rim = std::max(1.0, side * rimShare);
    auto const room = QRectF(0, 0, side, side).adjusted(rim, rim, -rim, -rim);
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        if (look.characters)
            drawCharacters(painter, *look.characters, style.font, ink, room);
        else
            drawProgram(painter, room, ink);
        if (look.attention == StatusItemLook::Attention::waiting)
            drawDot(painter, room);
    }
    return withRim(picture, style.isLightInk ? darkInk : lightInk, rim);
}

}
