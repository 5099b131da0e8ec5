#pragma once

#include <QMenu>
#include <QString>

#include <functional>

namespace Quillory {

// Adds an item for each target, in order: a few as items of the menu, many as a list in it, which asks for the titles of
// the rows in sight alone. Line feeds in a title become blanks. `chosen` gets the target's position.
void addTargetItems(QMenu& menu, qsizetype count, std::function<QString(qsizetype)> const& title,
    std::function<void(qsizetype)> const& chosen);

}
