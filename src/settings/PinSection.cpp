#include "settings/PinSection.h"

#include "reader/BarButton.h"
#include "settings/PinRow.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace Quillory {

PinSection::PinSection(LibraryStore& store, QWidget* parent)
    : SettingsSection(tr("Pinned sheets"), parent)
    , m_store(store)
    , m_list(new QWidget(card()))
{
    m_whenNone = addText(tr("Pin a sheet in the reader to give it its own menu-bar icon."), Look::secondary);
    auto* const rows = new QVBoxLayout(m_list);
    rows->setContentsMargins(0, 0, 0, 0);
    addRow(m_list);
    m_whenAny = addText(
        tr("Unpinning only removes the icon. Missing sheets are hidden until available again."), Look::secondary);
}

void PinSection::refresh(SettingsState const& state)
{
    m_whenNone->setVisible(state.pins.isEmpty());
    m_list->setVisible(!state.pins.isEmpty());
    m_whenAny->setVisible(!state.pins.isEmpty());
    if (state.pins != m_pins)
        showPins(state.pins);
}

// The keyboard stays at its place in the list.
void PinSection::showPins(QList<SettingsState::Pin> const& pins)
{
    auto const hasKeyboard = [](PinRow* row) { return row->button().hasFocus(); };
    auto const at = std::ranges::find_if(m_rows, hasKeyboard) - m_rows.begin();
    bool const hadKeyboard = at < m_rows.size();
    for (auto* const row : std::as_const(m_rows)) {
        row->hide();
        row->deleteLater(); // one of its buttons may have called
    }
    m_rows.clear();
    m_pins = pins;
    for (auto const& pin : pins) {
        auto* const row = new PinRow(pin, [this, id = pin.id] { m_store.togglePin(id); }, m_list);
        m_list->layout()->addWidget(row);
        row->show();
        m_rows.append(row);
    }
    if (hadKeyboard && !m_rows.isEmpty())
        m_rows.at(std::min(at, std::ssize(m_rows) - 1))->button().setFocus(Qt::OtherFocusReason);
}

}
