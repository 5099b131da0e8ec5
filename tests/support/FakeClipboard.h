#pragma once

#include "platform/Clipboard.h"

#include <map>

namespace Quillory {

// Pasteboards in memory, which can refuse a text as a desktop does when another program holds on to them.
class FakeClipboard final : public Clipboard {
public:
    bool setText(Pasteboard pasteboard, QString const& text) override
    {
        if (m_refuses)
            return false;
        ++writes;
        return offerText(pasteboard, [text] { return text; });
    }

    bool offerText(Pasteboard pasteboard, std::function<QString()> text) override
    {
        m_texts[pasteboard] = std::move(text);
        return true;
    }

    QString text(Pasteboard pasteboard) const override
    {
        auto const found = m_texts.find(pasteboard);
        return found == m_texts.end() ? QString() : found->second();
    }

    void setRefuses(bool refuses) { m_refuses = refuses; }

    int writes = 0;

private:
    std::map<Pasteboard, std::function<QString()>> m_texts;
    bool m_refuses = false;
};

}
