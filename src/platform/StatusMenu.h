#pragma once

#include <QList>
#include <QString>

namespace Quillory {

// A row of a status item's menu; without a title a separator.
struct StatusMenuRow {
    int number = 0; // the same for the same row in every menu of its item, and unique in each; above 0
    QString title;
    bool isEnabled = true;
    QString key; // one character that, with the command modifier, stands for the row

    bool isSeparator() const { return title.isEmpty(); }
    bool operator==(StatusMenuRow const&) const = default;
};

using StatusMenu = QList<StatusMenuRow>;

}
