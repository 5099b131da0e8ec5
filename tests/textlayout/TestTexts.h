#pragma once

#include "textlayout/TextLayout.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <vector>

namespace Quillory {

inline TextLayout layoutOf(AttributedText text, TextWidths const& widths)
{
    return { std::move(text), widths, FontSet::ofDesktop(), ColorSet::fromPalette(QPalette()) };
}

inline AttributedText plainText(
    QString const& string, ParagraphStyle const& style = {}, TextAttributes const& attributes = {})
{
    AttributedText::Builder builder;
    builder.append(string, attributes, style);
    return std::move(builder).build();
}

using Rows = std::vector<std::vector<QString>>;

// A grid whose first row has a background; every cell ends in a line feed.
inline AttributedText tableText(Rows const& rows, int table = 0, TextAttributes const& attributes = {})
{
    AttributedText::Builder builder;
    std::size_t columns = 0;
    for (auto const& row : rows)
        columns = std::max(columns, row.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            TableBlock const block { .columns = static_cast<int>(columns), .padding = 5, .borderWidth = 0.5 };
            ParagraphStyle const style { .block = block };
            builder.appendKnown(rows[row][column] + u'\n', builder.add(attributes),
                builder.add(builder.add(style), { table, static_cast<int>(row), static_cast<int>(column) }));
        }
    }
    return std::move(builder).build();
}

inline Rows longTable(int count)
{
    Rows rows;
    for (int row = 0; row < count; ++row)
        rows.push_back({ u"row%1;"_qs.arg(row), u"é words "_qs.repeated(row * 7 % 40) });
    return rows;
}

inline void makeAllExact(TextLayout& layout)
{
    while (layout.makeSomeExact(0, std::chrono::milliseconds(50)).moreLeft) { }
}

inline double lineHeight()
{
    return layoutOf(plainText(u"x"_qs), 1000).height();
}

}
