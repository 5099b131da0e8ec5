#include "settings/PinRow.h"

#include "reader/BarButton.h"
#include "reader/ElidedLabel.h"

#include <QHBoxLayout>

#include <utility>

namespace Quillory {

PinRow::PinRow(SettingsState::Pin const& pin, std::function<void()> unpin, QWidget* parent)
    : QWidget(parent)
    , m_unpin(BarButton::withText(
          tr("Unpin"), tr("Remove this sheet’s menu-bar shortcut; keep the sheet file"), BarButton::Look::framed, this))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const title = new ElidedLabel(this);
    title->setTextFormat(Qt::PlainText);
    title->setText(pin.title);
    row->addWidget(title, 1);
    row->addWidget(m_unpin);
    m_unpin->setAccessibleName(tr("Unpin %1").arg(pin.title));
    connect(m_unpin, &BarButton::clicked, this, [unpin = std::move(unpin)] { unpin(); });
}

}
