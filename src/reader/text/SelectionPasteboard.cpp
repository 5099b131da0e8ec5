#include "reader/text/SelectionPasteboard.h"

#include "reader/text/SelectedText.h"

namespace Quillory {

std::optional<QString> SelectionPasteboard::text(AttributedText const& text, TextRange range) const
{
    return mayLeave(range) ? std::optional(selectedText(text, range)) : std::nullopt;
}

void SelectionPasteboard::offer(Clipboard::Pasteboard pasteboard, AttributedText const& text, TextRange range) const
{
    if (mayLeave(range))
        m_clipboard.offerText(pasteboard, [text, range] { return selectedText(text, range); });
}

}
