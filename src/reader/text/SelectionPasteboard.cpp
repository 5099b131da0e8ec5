#include "reader/text/SelectionPasteboard.h"

#include "reader/text/SelectionData.h"

#include <QGuiApplication>

namespace Quillory {

std::unique_ptr<QMimeData> SelectionPasteboard::data(AttributedText const& text, TextRange range) const
{
    if (m_isLearningModeEnabled || range.length <= 0)
        return {};
    return std::make_unique<SelectionData>(text, range);
}

bool SelectionPasteboard::write(QClipboard::Mode pasteboard, AttributedText const& text, TextRange range) const
{
    auto* const clipboard = QGuiApplication::clipboard();
    if (pasteboard == QClipboard::Selection && !clipboard->supportsSelection())
        return false;
    auto selected = data(text, range);
    if (!selected)
        return false;
    clipboard->setMimeData(selected.release(), pasteboard);
    return true;
}

}
