#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace Quillory {

// A file name as text. Where it is no UTF-8, its ill-formed bytes and "%" stand as "%" and two hexadecimal digits, so
// that two such files keep different names; `isUtf8` tells them from one that is really called so.
struct FileName {
    QString text;
    bool isUtf8 = true;

    static FileName fromBytes(QByteArrayView bytes);
};

// The part after the last point, empty without one. A point at the start makes a hidden name, not an extension.
QStringView pathExtension(QStringView name);

// The name without its last extension: "keys.quillory" for "keys.quillory.json".
QStringView pathStem(QStringView name);

}
