#pragma once

#include "library/PreparedImage.h"
#include "rendering/ParsedMarkdown.h"
#include "rendering/RenderedMarkdown.h"

#include <QMap>
#include <QString>

// Turns a Markdown sheet into attributed text and copy targets. Stateless; any thread.
namespace Quillory::MarkdownRenderer {

using Images = QMap<QString, PreparedImage>; // by the source as written

// `textSize` is in points. A first heading of level 1 that is `title` is left out, since the window shows it already.
// A picture that is not in `images` stands as a line of text, a link that can't be used as plain text.
RenderedMarkdown render(ParsedMarkdown const& parsed, QString const& title, Images const& images, double textSize);

// What a long sheet begins with.
struct Beginning {
    RenderedMarkdown rendered;
    bool isWhole = true;
};

// Of the first `characters` at least, as far as there are as many. Its characters and targets are the first of the whole
// sheet's, and it doesn't end within a table, whose columns go by all of its cells.
Beginning renderBeginning(
    ParsedMarkdown const& parsed, QString const& title, Images const& images, double textSize, qsizetype characters);

// Of the source text itself.
RenderedMarkdown render(QString const& source, QString const& title, Images const& images, double textSize);

}
