#include "settings/Disclosure.h"

#include "reader/BarButton.h"

#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int gap = 6; // points

}

Disclosure::Disclosure(QString const& title, QStringList const& texts, QWidget* parent)
    : QWidget(parent)
    , m_button(BarButton::withText(title, {}, BarButton::Look::plain, this))
    , m_content(new QWidget(this))
{
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(gap);
    rows->addWidget(m_button, 0, Qt::AlignLeft);
    rows->addWidget(m_content);
    auto* const lines = new QVBoxLayout(m_content);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(gap);
    for (auto const& text : texts) {
        auto* const label = new QLabel(text, m_content);
        label->setObjectName(QStringLiteral("secondary"));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        lines->addWidget(label);
    }
    connect(m_button, &BarButton::clicked, this, [this] { setOpen(!isOpen()); });
    setOpen(false);
}

bool Disclosure::isOpen() const
{
    return !m_content->isHidden();
}

void Disclosure::setOpen(bool isOpen)
{
    m_content->setVisible(isOpen);
    m_button->setSymbol(isOpen ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"));
    m_button->setValue({ isOpen ? 1.0 : 0.0, isOpen ? tr("expanded") : tr("collapsed") });
    updateGeometry();
}

}
