#pragma once

#include "platform/Clipboard.h"

namespace Quillory {

// The toolkit's clipboard, and its primary selection where the window system has one.
class QtClipboard final : public Clipboard {
public:
    bool setText(Pasteboard pasteboard, QString const& text) override;
    bool offerText(Pasteboard pasteboard, std::function<QString()> text) override;
    QString text(Pasteboard pasteboard) const override;
};

}
