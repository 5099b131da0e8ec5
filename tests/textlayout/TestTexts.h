#pragma once

#include "textlayout/TextLayout.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <vector>

namespace Quillory {

inline TextLayout layoutOf(AttributedText text, double width)
{
    return { std::move(text), width, FontSet::ofDesktop(), ColorSet::fromPalette(QPalette()) };
}

inline AttributedText plainText(
    QString const& string, ParagraphStyle const& style = {}, TextAttributes const& attributes = {})
{
    AttributedText::Builder builder;
    builder.append(string, attributes, style);
    return std::move(builder).build();
}

// A grid whose first row has a background; every cell ends in a line feed.
inline AttributedText tableText(std::vector<std::vector<QString>> const& rows, int table = 0)
{
    AttributedText::Builder builder;
    std::size_t columns = 0;
    for (auto const& row : rows)
        columns = std::max(columns, row.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            TableBlock block;
            block.columns = static_cast<int>(columns);
            block.padding = 5;
            block.borderWidth = 0.5;
            ParagraphStyle style;
            style.block = block;
            builder.appendKnown(rows[row][column] + u'\n', builder.add(TextAttributes()),
                builder.add(builder.add(style), { table, static_cast<int>(row), static_cast<int>(column) }));
        }
    }
    return std::move(builder).build();
}

inline void makeAllExact(TextLayout& layout)
{
    while (layout.makeSomeExact(0, std::chrono::milliseconds(50)).moreLeft) { }
}

inline double lineHeight()
{
    auto layout = layoutOf(plainText(QStringLiteral("x")), 1000);
    return layout.height();
}

}
