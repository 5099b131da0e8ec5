#pragma once

#include "platform/DesktopHotKeys.h"
#include "platform/Observers.h"

#include <QMap>

#include <utility>

namespace Quillory {

// A desktop that binds what and when a test says.
class FakeDesktopHotKeys final : public DesktopHotKeys {
public:
    void bind(QList<Wish> wanted) override { wishes = std::move(wanted); }
    void askAgain() override { ++asked; }
    State state() const override { return m_state; }
    QString trigger(QString const& id) const override { return m_triggers.value(id); }
    Registration observeChanges(std::function<void()> changed) override { return m_changes.add(std::move(changed)); }

    void become(State state, QMap<QString, QString> triggers = {})
    {
        m_state = state;
        m_triggers = std::move(triggers);
        m_changes.tell();
    }

    QList<Wish> wishes;
    int asked = 0;

private:
    State m_state = State::asking;
    QMap<QString, QString> m_triggers;
    Observers<void()> m_changes;
};

}
