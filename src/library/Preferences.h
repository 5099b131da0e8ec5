#pragma once

#include "input/ModifierGesture.h"
#include "library/KeyNames.h"
#include "platform/UserDefaults.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// The user's choices that the library keeps, each under its key. A damaged value in the user defaults counts as
// absent. Main thread only.
class Preferences {
public:
    // In points.
    static constexpr double defaultTextSize = 16;
    static constexpr double minimumTextSize = 11;
    static constexpr double maximumTextSize = 32;

    // `defaults` outlives it.
    explicit Preferences(UserDefaults& defaults);

    std::optional<QString> lastSheet() const;
    void setLastSheet(std::optional<QString> const& id);

    bool learningModeEnabled() const;
    void setLearningModeEnabled(bool isEnabled);

    ModifierGesture modifierGesture() const;
    void setModifierGesture(ModifierGesture gesture);

    // Within the range above; any size can be stored.
    double textSize() const;
    void setTextSize(double size);

    KeyNames keyNames() const;
    void setKeyNames(KeyNames names);

    // The ids of the sheets that are pinned in `folder`, in pin order. Storing keeps those of all other folders.
    QStringList pins(QString const& folder) const;
    void setPins(QString const& folder, QStringList const& pins);

private:
    UserDefaults& m_defaults;
};

}
