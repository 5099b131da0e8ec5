#pragma once

#include <QList>
#include <QString>

namespace Quillory {

// What a release says of itself: paragraphs and items of lists, with stressed words and code in them.
struct ReleaseNotes {
    enum class Style { plain, emphasis, code };
    struct Span {
        QString text;
        Style style = Style::plain;
        bool operator==(Span const&) const = default;
    };

    enum class Form { paragraph, bullet, numbered };
    struct Block {
        Form form = Form::paragraph;
        QList<Span> spans;
        bool operator==(Block const&) const = default;
    };

    // All that a reader gets of them. What goes beyond is left out.
    static constexpr qsizetype mostBlocks = 200;
    static constexpr qsizetype mostCharacters = 20'000;

    QList<Block> blocks;
};

}
