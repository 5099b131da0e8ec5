#pragma once

#include "Markdown/Element.h"
#include "Markdown/ParseOptions.h"
#include "Markdown/RawMarkup.h"

#include <QByteArrayView>
#include <QString>

#include <memory>

namespace Quillory::Markup {

// A parsed Markdown text: the root of an immutable tree of typed elements. Parsing can't fail.
// Safe on any thread; a document may be read from several at once. Parses of one process run one after the other.
class Document {
public:
    static Document parsing(QString const& text, ParseOptions options = ParseOptions::none);

    // Of the text's UTF-8 bytes, which must be well-formed.
    static Document parsingUtf8(QByteArrayView utf8, ParseOptions options = ParseOptions::none);

    // UTF-16 units of all strings together.
    qsizetype poolSize() const { return m_storage->pool.size(); }

    // All elements in document order, the root first.
    std::vector<RawMarkup> const& elements() const { return m_storage->elements; }
    Element element(std::uint32_t index) const { return { *m_storage, index }; }

private:
    explicit Document(RawMarkupStorage storage);

    std::shared_ptr<RawMarkupStorage const> m_storage;
};

}
