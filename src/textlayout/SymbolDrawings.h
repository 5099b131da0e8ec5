#pragma once

#include <QPainterPath>
#include <QStringView>

namespace Quillory {

// The outline of a symbol, in a square of `SymbolDrawing::side` units.
struct SymbolDrawing {
    static constexpr double side = 24;

    enum class Ink { line, area };

    Ink ink = Ink::line;
    QPainterPath path;

    // Null for a name that has no drawing. Made when it is first asked for. GUI thread only.
    static SymbolDrawing const* of(QStringView name);
};

}
