#pragma once

#include "rendering/PreparedShortcuts.h"

// Turns a structured sheet into columns of sections, each entry a line with its shortcuts, which are the copy targets.
// Stateless; any thread that `measure` may be used on.
namespace Quillory::ShortcutRenderer {

using Images = PreparedShortcuts::Images;

// `width` is what the text has, `textSize` the reader's; both in points. The sheet's title is not drawn.
RenderedMarkdown render(ShortcutSheet const& sheet, Images const& images, double width, double textSize,
    TextMeasure const& measure, KeyNames keyNames = KeyNames::symbols);

}
