#include "rendering/ShortcutRenderer.h"

namespace Quillory {

RenderedMarkdown ShortcutRenderer::render(
    ShortcutSheet const& sheet, Images const& images, double width, double textSize, TextMeasure const& measure)
{
    return PreparedShortcuts(sheet, images, textSize, measure).render(width);
}

}
