#pragma once

#include "platform/ModifierFlags.h"
#include "platform/Registration.h"

#include <QList>
#include <QString>

#include <cstdint>
#include <functional>

namespace Quillory {

// Hot keys that the desktop binds for the program, perhaps to keys of its own choice, on sessions where programs can't
// grab keys. Main thread only.
class DesktopHotKeys {
public:
    struct Wish {
        QString id;
        QString description; // for the desktop's own settings
        std::uint16_t keyCode = 0; // virtual
        ModifierFlags modifiers = ModifierFlags::none;
        bool operator==(Wish const&) const = default;
    };

    enum class State {
        unavailable, // the desktop has no such service
        asking,
        bound,
        refused, // by the user, or taken back by the desktop; asked for again only for other wishes or by `askAgain`
    };

    virtual ~DesktopHotKeys() = default;

    // Replaces the earlier wishes. The same ones again ask nothing.
    virtual void bind(QList<Wish> wishes) = 0;

    // Asks once more for what was refused. Does nothing in another state.
    virtual void askAgain() = 0;

    virtual State state() const = 0;

    // The keys that the desktop has bound to that wish, in its own words. Empty where it has none.
    virtual QString trigger(QString const& id) const = 0;

    // Calls `changed` after the state or a trigger has changed.
    virtual Registration observeChanges(std::function<void()> changed) = 0;
};

}
