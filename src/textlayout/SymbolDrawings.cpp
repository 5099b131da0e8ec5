#include "textlayout/SymbolDrawings.h"

#include <QStringView>

#include <array>
#include <functional>
#include <map>

namespace Quillory {

namespace {

struct Source {
    char16_t const* name;
    SymbolDrawing::Ink ink;
    // M and L lead to a point, C does so in a curve by two handles, Z back to the start; A is a whole circle with its
    // centre and radius.
    char16_t const* path;
};

constexpr auto line = SymbolDrawing::Ink::line;
constexpr auto area = SymbolDrawing::Ink::area;

constexpr std::array sources {
    Source { u"checkmark", line, u"M 5 12.5 L 10 18 L 19 6" },
    Source { u"checkmark.circle", line, u"A 12 12 9.5 M 7.5 12.5 L 10.8 15.8 L 16.5 8.8" },
    Source { u"exclamationmark.shield", line,
        u"M 12 2.5 L 20.5 5.5 L 20.5 11 C 20.5 16 17 19.8 12 21.5 C 7 19.8 3.5 16 3.5 11 L 3.5 5.5 Z M 12 7 L 12 13 "
        u"M 12 16.4 L 12 16.5" },
    Source { u"chevron.up", line, u"M 5 15.5 L 12 8.5 L 19 15.5" },
    Source { u"chevron.down", line, u"M 5 8.5 L 12 15.5 L 19 8.5" },
    Source { u"chevron.left", line, u"M 15 5 L 8 12 L 15 19" },
    Source { u"chevron.right", line, u"M 9 5 L 16 12 L 9 19" },
    Source { u"xmark", line, u"M 6 6 L 18 18 M 18 6 L 6 18" },
    Source { u"magnifyingglass", line, u"A 10.5 10.5 6 M 15 15 L 20 20" },
    Source { u"textformat.size", line,
        u"M 2.5 19 L 8.5 5 L 14.5 19 M 4.7 14 L 12.3 14 M 15 19 L 18.5 11 L 22 19 M 16.2 16.4 L 20.8 16.4" },
    Source { u"graduationcap", line,
        u"M 12 5 L 22 9.5 L 12 14 L 2 9.5 Z M 6 11.6 L 6 16 C 8 19.3 16 19.3 18 16 L 18 11.6 M 22 9.5 L 22 15" },
    Source { u"gearshape", line,
        u"A 12 12 3 M 10.4 4.6 L 10.8 2.5 L 13.2 2.5 L 13.6 4.6 L 16.1 5.6 L 17.8 4.4 L 19.6 6.2 L 18.4 7.9 "
        u"L 19.4 10.4 L 21.5 10.8 L 21.5 13.2 L 19.4 13.6 L 18.4 16.1 L 19.6 17.8 L 17.8 19.6 L 16.1 18.4 "
        u"L 13.6 19.4 L 13.2 21.5 L 10.8 21.5 L 10.4 19.4 L 7.9 18.4 L 6.2 19.6 L 4.4 17.8 L 5.6 16.1 "
        u"L 4.6 13.6 L 2.5 13.2 L 2.5 10.8 L 4.6 10.4 L 5.6 7.9 L 4.4 6.2 L 6.2 4.4 L 7.9 5.6 Z" },
    Source { u"pin", line,
        u"M 8 3 L 16 3 L 15 5 L 15.4 10 C 17.6 11 18.5 12.5 18.5 14.5 L 5.5 14.5 C 5.5 12.5 6.4 11 8.6 10 L 9 5 Z "
        u"M 12 14.5 L 12 21.5" },
    Source { u"pin.fill", area,
        u"M 7.5 2.5 L 16.5 2.5 L 15.5 5 L 16 9.5 C 18.2 10.6 19.2 12.5 19.2 15.2 L 12.8 15.2 L 12.8 21.5 L 12 23 "
        u"L 11.2 21.5 L 11.2 15.2 L 4.8 15.2 C 4.8 12.5 5.8 10.6 8 9.5 L 8.5 5 Z" },
    Source { u"doc.text", line,
        u"M 6.5 2.5 L 14 2.5 L 19 7.5 L 19 20 C 19 21 18.5 21.5 17.5 21.5 L 6.5 21.5 C 5.5 21.5 5 21 5 20 L 5 4 "
        u"C 5 3 5.5 2.5 6.5 2.5 Z M 13.5 2.5 L 13.5 8 L 19 8 M 8.5 12 L 15.5 12 M 8.5 15 L 15.5 15 M 8.5 18 L 13 18" },
    Source { u"ellipsis.circle", line, u"A 12 12 9.5 M 7.5 12 L 7.6 12 M 11.95 12 L 12.05 12 M 16.4 12 L 16.5 12" },
    Source {
        u"exclamationmark.triangle", line, u"M 12 3.5 L 21.5 20 L 2.5 20 Z M 12 9.5 L 12 14.5 M 12 17.2 L 12 17.3" },

    // Of keys, by the character that stands for each. The square is as high as a capital letter.
    Source { u"⌃", line, u"M 3 16.5 L 12 7.5 L 21 16.5" },
    Source { u"⌥", line, u"M 2 4 L 8.5 4 L 15.5 20 L 22 20 M 15 4 L 22 4" },
    Source { u"⇧", line, u"M 12 2 L 21.5 11.5 L 16.5 11.5 L 16.5 22 L 7.5 22 L 7.5 11.5 L 2.5 11.5 Z" },
    Source { u"⇪", line,
        u"M 12 1.5 L 21.5 10 L 16.5 10 L 16.5 14.5 L 7.5 14.5 L 7.5 10 L 2.5 10 Z M 7.5 19.5 L 16.5 19.5 L 16.5 22.5 "
        u"L 7.5 22.5 Z" },
    Source { u"⌘", line,
        u"M 8.5 5.2 C 8.5 3.4 7.1 2 5.3 2 C 3.5 2 2 3.4 2 5.2 C 2 7 3.5 8.5 5.3 8.5 L 18.7 8.5 C 20.5 8.5 22 7 22 5.2 "
        u"C 22 3.4 20.5 2 18.7 2 C 16.9 2 15.5 3.4 15.5 5.2 L 15.5 18.8 C 15.5 20.6 16.9 22 18.7 22 "
        u"C 20.5 22 22 20.6 22 18.8 C 22 17 20.5 15.5 18.7 15.5 L 5.3 15.5 C 3.5 15.5 2 17 2 18.8 "
        u"C 2 20.6 3.5 22 5.3 22 C 7.1 22 8.5 20.6 8.5 18.8 Z" },
    Source { u"↩", line, u"M 21 4 L 21 14.5 L 3 14.5 M 9 8.5 L 3 14.5 L 9 20.5" },
    Source { u"⌤", line, u"M 3 2.5 L 21 2.5 M 5 15.5 L 12 8.5 L 19 15.5 M 3 21.5 L 21 21.5" },
    Source { u"⇥", line, u"M 1.5 12 L 17 12 M 11 6 L 17 12 L 11 18 M 22 5 L 22 19" },
    Source { u"⎋", line,
        u"M 16 5.1 C 19.2 6.3 21.5 9.4 21.5 13 C 21.5 17.7 17.7 21.5 13 21.5 C 9.4 21.5 6.3 19.2 5.1 16 "
        u"M 13 13 L 3 3 M 3 9.5 L 3 3 L 9.5 3" },
    Source { u"⌫", line, u"M 8 4 L 22.5 4 L 22.5 20 L 8 20 L 1.5 12 Z M 11.5 8.7 L 18 15.3 M 18 8.7 L 11.5 15.3" },
    Source { u"⌦", line, u"M 16 4 L 1.5 4 L 1.5 20 L 16 20 L 22.5 12 Z M 6 8.7 L 12.5 15.3 M 12.5 8.7 L 6 15.3" },
    Source { u"←", line, u"M 22 12 L 2 12 M 8.5 5.5 L 2 12 L 8.5 18.5" },
    Source { u"→", line, u"M 2 12 L 22 12 M 15.5 5.5 L 22 12 L 15.5 18.5" },
    Source { u"↑", line, u"M 12 22 L 12 2 M 5.5 8.5 L 12 2 L 18.5 8.5" },
    Source { u"↓", line, u"M 12 2 L 12 22 M 5.5 15.5 L 12 22 L 18.5 15.5" },
    Source { u"↖", line, u"M 20.5 20.5 L 3.5 3.5 M 3.5 13 L 3.5 3.5 L 13 3.5" },
    Source { u"↘", line, u"M 3.5 3.5 L 20.5 20.5 M 20.5 11 L 20.5 20.5 L 11 20.5" },
    Source { u"⇞", line, u"M 12 22.5 L 12 2 M 5.5 8.5 L 12 2 L 18.5 8.5 M 6 13.5 L 18 13.5 M 6 19 L 18 19" },
    Source { u"⇟", line, u"M 12 1.5 L 12 22 M 5.5 15.5 L 12 22 L 18.5 15.5 M 6 10.5 L 18 10.5 M 6 5 L 18 5" },
};

QPainterPath pathOf(QStringView source)
{
    QPainterPath path;
    auto const words = source.split(u' ');
    qsizetype next = 0;
    auto const number = [&] { return words.at(next++).toDouble(); };
    auto const point = [&] {
        auto const x = number();
        return QPointF(x, number());
    };
    while (next < words.size()) {
        switch (words.at(next++).front().unicode()) {
        case u'M':
            path.moveTo(point());
            break;
        case u'L':
            path.lineTo(point());
            break;
        case u'C': {
            auto const first = point();
            auto const second = point();
            path.cubicTo(first, second, point());
            break;
        }
        case u'A': {
            auto const center = point();
            auto const radius = number();
            path.addEllipse(center, radius, radius);
            break;
        }
        default: // Z
            path.closeSubpath();
        }
    }
    return path;
}

}

SymbolDrawing const* SymbolDrawing::of(QStringView name)
{
    static std::map<QString, SymbolDrawing, std::less<>> made;
    if (auto const known = made.find(name); known != made.end())
        return &known->second;
    for (auto const& source : sources) {
        if (name == QStringView(source.name))
            return &made.emplace(name.toString(), SymbolDrawing { source.ink, pathOf(source.path) }).first->second;
    }
    return nullptr;
}

}
