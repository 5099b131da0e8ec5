#include "reader/SheetHeader.h"

#include "reader/BarButton.h"
#include "reader/ElidedLabel.h"
#include "reader/Panes.h"
#include "reader/WindowColors.h"
#include "textlayout/SymbolPainting.h"

#include <QHBoxLayout>
#include <QPainter>

#include <utility>

namespace Quillory {

namespace {

constexpr int iconSide = 24; // points
// Below this width in characters of the bar's font the button is a symbol alone.
constexpr int charactersForText = 44;

}

SheetHeader::SheetHeader(QWidget* parent)
    : QWidget(parent)
    , m_icon(new QLabel(this))
    , m_title(new ElidedLabel(this))
    , m_find(new BarButton({}, tr("Find in sheet"), tr("Find text in this sheet (⌘F)"), this))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 8, 8, 6);
    row->setSpacing(8);
    m_icon->setFixedSize(iconSide, iconSide);
    row->addWidget(m_icon);
    m_title->setObjectName(QStringLiteral("title"));
    row->addWidget(m_title, 1);
    row->addWidget(m_find);
    connect(m_find, &BarButton::clicked, this, &SheetHeader::findToggled);
}

void SheetHeader::refresh(ReaderWindowState const& state)
{
    m_title->setText(state.title);
    m_icon->setVisible(state.icon.has_value());
    if (state.icon && state.icon != m_shown)
        showIcon(*state.icon);
    m_shown = state.icon;
    setHelp(*m_find, state.findVisible ? tr("Hide search in this sheet") : tr("Find text in this sheet (⌘F)"));
}

void SheetHeader::showIcon(ReaderWindowState::Icon const& icon)
{
    auto const pixels = QSize(iconSide, iconSide) * devicePixelRatioF();
    QPixmap picture(pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    if (icon.image) {
        // Of a large picture most pixels are left out first, which is fast.
        auto const scaled = icon.image->cgImage.scaled(4 * pixels, Qt::KeepAspectRatio)
                                .scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        painter.drawImage((pixels.width() - scaled.width()) / 2, (pixels.height() - scaled.height()) / 2, scaled);
    } else {
        paintSymbol(painter, QStringLiteral("doc.text"), picture.rect(), palette().color(QPalette::Text));
    }
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_icon->setPixmap(picture);
}

void SheetHeader::setScrolled(bool isScrolled)
{
    if (std::exchange(m_isScrolled, isScrolled) != isScrolled)
        update();
}

void SheetHeader::paintEvent(QPaintEvent*)
{
    if (m_isScrolled)
        QPainter(this).fillRect(0, height() - 1, width(), 1, WindowColors::fromPalette(palette()).separator);
}

void SheetHeader::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    auto const isWide = width() >= charactersForText * fontMetrics().averageCharWidth();
    m_find->setText(isWide ? tr("Find in sheet  ⌘F") : QString());
    m_find->setSymbol(isWide ? QString() : QStringLiteral("magnifyingglass"));
    m_find->updateGeometry();
}

void SheetHeader::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_shown)
        showIcon(*m_shown);
}

void SheetHeader::setTitleFont(QFont const& font)
{
    m_title->setFont(font);
}

}
