#pragma once

#include <cmark-gfm-core-extensions.h>

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <cstdlib>
#include <memory>

namespace Quillory {

// The parsing library's own account of a text, made with its default memory and without any code of the program: a
// line for each tag, without indentation and without what the program's trees leave out.
inline QString parserXml(QByteArray const& text, int renderOptions = CMARK_OPT_DEFAULT)
{
    cmark_gfm_core_extensions_ensure_registered();
    auto* const parser = cmark_parser_new(CMARK_OPT_SOURCEPOS | CMARK_OPT_SMART);
    for (char const* const extension : { "table", "strikethrough", "tasklist" })
        cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(extension));
    cmark_parser_feed(parser, text.constData(), static_cast<std::size_t>(text.size()));
    std::unique_ptr<cmark_node, decltype(&cmark_node_free)> const root(cmark_parser_finish(parser), cmark_node_free);
    cmark_parser_free(parser);
    std::unique_ptr<char, decltype(&std::free)> const xml(cmark_render_xml(root.get(), renderOptions), std::free);
    static QRegularExpression const leftOut(
        QStringLiteral("^<[?!].*\\n|^ +(?=<)| (xml:space|xmlns|delim|tight|align)=\"[^\"]*\""),
        QRegularExpression::MultilineOption);
    return QString::fromUtf8(xml.get()).remove(leftOut);
}

}
