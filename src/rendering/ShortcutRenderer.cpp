#include "rendering/ShortcutRenderer.h"

namespace Quillory {

RenderedMarkdown ShortcutRenderer::render(ShortcutSheet const& sheet, Images const& images, double width,
    double textSize, TextMeasure const& measure, KeyNames keyNames)
{
    return PreparedShortcuts(sheet, images, textSize, measure, keyNames).render(width);
}

}
