#pragma once

#include "rendering/AttributedText.h"
#include "text/TextRange.h"

#include <QClipboard>
#include <QMimeData>

#include <memory>

namespace Quillory {

// The one place from which selected text leaves the reader: the clipboard, the primary selection and drags. Hands out
// nothing in Learning Mode. A long selection costs nothing before somebody asks for it. GUI thread only.
class SelectionPasteboard {
public:
    void setLearningModeEnabled(bool isEnabled) { m_isLearningModeEnabled = isEnabled; }

    // Null in Learning Mode and for an empty range.
    std::unique_ptr<QMimeData> data(AttributedText const& text, TextRange range) const;
    // False when nothing was written.
    bool write(QClipboard::Mode pasteboard, AttributedText const& text, TextRange range) const;

private:
    bool m_isLearningModeEnabled = false;
};

}
