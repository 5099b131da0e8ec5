#include "reader/BannerRow.h"

#include "reader/BarButton.h"

#include <QBoxLayout>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int gap = 8; // points, as the next
constexpr int betweenButtons = 6;
constexpr int leastCharacters = 36; // of the text beside buttons

}

BannerRow::BannerRow(QWidget* text, QWidget* parent)
    : QWidget(parent)
    , m_buttons(new QWidget(this))
    , m_buttonLayout(new QBoxLayout(QBoxLayout::LeftToRight, m_buttons))
    , m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(gap);
    m_layout->addWidget(text, 1);
    m_layout->addWidget(m_buttons, 0, Qt::AlignTop | Qt::AlignLeading);
    m_buttonLayout->setContentsMargins(0, 0, 0, 0);
    m_buttonLayout->setSpacing(betweenButtons);
    m_buttons->hide();
}

BarButton* BannerRow::addButton(QString const& text, QString const& help)
{
    auto* const button = BarButton::withText(text, help, BarButton::Look::framed, m_buttons);
    m_buttonLayout->addWidget(button);
    m_buttons->show();
    return button;
}

void BannerRow::offer(BarButton& button, bool isOffered)
{
    button.setVisible(isOffered);
    arrange();
}

bool BannerRow::areOffered() const
{
    auto const isOffered = [](BarButton const* each) { return !each->isHidden(); };
    return std::ranges::any_of(m_buttons->findChildren<BarButton*>(), isOffered);
}

bool BannerRow::areBelow() const
{
    return m_layout->direction() == QBoxLayout::TopToBottom;
}

int BannerRow::wantedByButtons() const
{
    return areOffered() && areBelow() ? gap + m_buttonLayout->sizeHint().height() : 0;
}

void BannerRow::setHasRoomForButtons(bool hasRoom)
{
    m_hasRoom = hasRoom;
    showButtons();
}

void BannerRow::showButtons()
{
    m_buttons->setVisible(areOffered() && (m_hasRoom || !areBelow()));
}

void BannerRow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void BannerRow::arrange()
{
    using enum QBoxLayout::Direction;
    m_buttonLayout->setDirection(LeftToRight);
    auto const besideButtons = width() - m_buttonLayout->sizeHint().width() - gap;
    bool const isWide = besideButtons >= leastCharacters * fontMetrics().averageCharWidth();
    m_layout->setDirection(isWide ? LeftToRight : TopToBottom);
    m_buttonLayout->setDirection(besideButtons + gap >= 0 ? LeftToRight : TopToBottom);
    showButtons();
}

}
