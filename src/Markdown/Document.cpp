#include "Markdown/Document.h"

#include "Markdown/PaddedTables.h"
#include "Markdown/ParserMemory.h"
#include "Markdown/TreeConverter.h"
#include "text/StrictUtf8.h"

#include <cmark-gfm-core-extensions.h>

#include <mutex>

namespace Quillory::Markup {

namespace {

// The costliest sheet of 2 MiB that was found, one of small tables, takes 650 MB of this. What takes more expands
// itself, such as thousands of references to one long address.
constexpr std::size_t memoryLimit = std::size_t { 1 } << 30U;

constexpr int parserOptions = CMARK_OPT_SOURCEPOS | CMARK_OPT_SMART;

void attach(cmark_parser* parser, char const* extension)
{
    cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(extension));
}

// No object with a destructor may live here: when memory ends, this frame is left by a jump.
cmark_node* parseTree(ParserMemory& memory, QByteArrayView utf8, bool withTables)
{
    if (setjmp(memory.giveUp))
        return nullptr;
    auto* const parser = cmark_parser_new_with_mem(parserOptions, ParserMemory::allocator());
    if (withTables)
        attach(parser, "table");
    attach(parser, "strikethrough");
    attach(parser, "tasklist");
    cmark_parser_feed(parser, utf8.data(), static_cast<std::size_t>(utf8.size()));
    auto* const root = cmark_parser_finish(parser);
    memory.finishParse();
    return root;
}

// Stands in for a text that the parser can't take: the text itself, as code.
RawMarkupStorage asCode(QByteArrayView utf8)
{
    auto const text = decodeStrictUtf8(utf8).value_or(QString());
    auto const length = static_cast<std::uint32_t>(text.size());
    return { { { .kind = RawMarkupKind::document, .end = 2 },
                 { .kind = RawMarkupKind::codeBlock, .end = 2, .length = length } },
        text };
}

RawMarkupStorage parse(QByteArrayView utf8)
{
    // The library keeps the characters that mean something to an extension in one table for the whole process, and
    // writes to it during each parse.
    static std::mutex oneParseAtATime;
    static std::once_flag registered;
    std::call_once(registered, cmark_gfm_core_extensions_ensure_registered);

    auto const withTables = paddedCellBound(utf8) <= paddedCellLimit;
    std::lock_guard const lock(oneParseAtATime);
    ParserMemory memory(memoryLimit);
    auto* const root = parseTree(memory, utf8, withTables);
    return root ? convertTree(root, static_cast<std::size_t>(utf8.size())) : asCode(utf8);
}

}

Document::Document(RawMarkupStorage storage)
    : m_storage(std::make_shared<RawMarkupStorage const>(std::move(storage)))
{
}

Document Document::parsing(QString const& text, ParseOptions options)
{
    return parsingUtf8(text.toUtf8(), options);
}

Document Document::parsingUtf8(QByteArrayView utf8, ParseOptions)
{
    return Document(parse(utf8));
}

}
