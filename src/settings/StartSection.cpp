#include "settings/StartSection.h"

#include "library/LibraryStore.h"
#include "reader/CheckRow.h"

#include <QEvent>
#include <QPointer>

namespace Quillory {

StartSection::StartSection(Autostart& autostart, LibraryStore& store, QWidget* parent)
    : SettingsSection(tr("Start"), parent)
    , m_autostart(autostart)
    , m_store(store)
    , m_switch(new CheckRow(tr("Start with your desktop"), card()))
{
    m_switch->setObjectName(QStringLiteral("startsWithDesktop"));
    addRow(m_switch);
    addText(tr("Quillory then waits in the background until you call it."), Look::secondary);
    connect(m_switch, &CheckRow::clicked, this,
        [this](bool isOn) { ask(isOn ? Autostart::State::on : Autostart::State::off); });
    refresh();
}

bool StartSection::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::Show)
        refresh();
    return SettingsSection::event(event);
}

void StartSection::ask(Autostart::State wanted)
{
    m_autostart.ask(wanted, [this, living = QPointer(this)](std::expected<void, QString> const& answer) {
        if (!living)
            return;
        if (!answer)
            m_store.showMessage(
                tr("Whether Quillory starts with your desktop could not be changed: %1").arg(answer.error()));
        refresh();
    });
}

void StartSection::refresh()
{
    m_switch->setChecked(m_autostart.state() == Autostart::State::on);
}

}
