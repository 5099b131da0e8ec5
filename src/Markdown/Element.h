#pragma once

#include "Markdown/RawMarkup.h"

#include <QString>
#include <QStringView>

namespace Quillory::Markup {

// One element of a document, seen in place. Cheap to copy; lives as long as the document.
class Element {
public:
    Element(RawMarkupStorage const& storage, std::uint32_t index)
        : m_storage(&storage)
        , m_index(index)
    {
    }

    RawMarkupKind kind() const { return raw().kind; }

    // The characters of an inline element or of a block of inline elements: code between backticks, breaks as a blank
    // or a line feed, marks dropped.
    QString plainText() const;

    RawMarkup const& raw() const { return m_storage->elements[m_index]; }
    QStringView string() const;
    QStringView secondString() const;
    std::uint32_t index() const { return m_index; }

private:
    RawMarkupStorage const* m_storage;
    std::uint32_t m_index;
};

}
