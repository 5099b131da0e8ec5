#pragma once

#include <QByteArrayList>

#include <cstdint>

namespace Quillory {

// Texts of Markdown, well-formed UTF-8, to compare trees of.
struct MarkdownSamples {
    // Every construct at least once.
    static QByteArrayList snippets();

    // Text put together from the pieces that mean something to a parser. Equal seeds give equal texts.
    static QByteArray random(std::uint32_t seed);

    // The same with tables: rows of any width, hidden pipes and markers, odd blanks, containers around them.
    static QByteArray randomTables(std::uint32_t seed);
};

}
