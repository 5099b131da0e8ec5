#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Quillory {

// What one item of the status bar shows. A value.
struct StatusItemLook {
    enum class Attention { none, waiting };

    // By which the bar remembers the item's place, also in later runs.
    QString autosaveName;
    // The face, as a person counts characters; without them it is the program's icon.
    std::optional<QStringList> characters;
    // Waiting: a dot beside the icon.
    Attention attention = Attention::none;
    // By which bars list and sort their items.
    QString title;
    QString toolTip;
    QString accessibilityLabel;

    bool operator==(StatusItemLook const&) const = default;
};

}
