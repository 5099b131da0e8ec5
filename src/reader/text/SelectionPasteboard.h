#pragma once

#include "platform/Clipboard.h"
#include "rendering/AttributedText.h"
#include "text/TextRange.h"

#include <QString>

#include <optional>

namespace Quillory {

// The one place from which selected text leaves the reader: the clipboard, the primary selection and drags. Hands out
// nothing in Learning Mode. The clipboard outlives it. GUI thread only.
class SelectionPasteboard {
public:
    explicit SelectionPasteboard(Clipboard& clipboard)
        : m_clipboard(clipboard)
    {
    }

    void setLearningModeEnabled(bool isEnabled) { m_isLearningModeEnabled = isEnabled; }

    // For a drag. Absent in Learning Mode and for an empty range.
    std::optional<QString> text(AttributedText const& text, TextRange range) const;
    // A long selection costs nothing before somebody asks for it. Leaves what is there where `text` is absent.
    void offer(Clipboard::Pasteboard pasteboard, AttributedText const& text, TextRange range) const;

private:
    bool mayLeave(TextRange range) const { return !m_isLearningModeEnabled && range.length > 0; }

    Clipboard& m_clipboard;
    bool m_isLearningModeEnabled = false;
};

}
