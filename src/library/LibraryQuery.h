#pragma once

#include <QByteArray>
#include <QStringView>

#include <optional>

namespace Quillory {

// What is typed to search the library, without the blanks around it: folded, one piece that a sheet must hold as it is.
struct LibraryQuery {
    static LibraryQuery of(QStringView typed);

    std::optional<QByteArray> bytes; // absent when nothing was typed, which every sheet holds
};

}
