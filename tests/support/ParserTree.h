#pragma once

#include <cmark-gfm-core-extensions.h>

#include <QStringView>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Quillory {

// The parsing library's own tree of a text, made with its default memory and without any code of the program.
class ParserTree {
public:
    explicit ParserTree(std::string_view text)
    {
        cmark_gfm_core_extensions_ensure_registered();
        auto* const parser = cmark_parser_new(CMARK_OPT_SOURCEPOS | CMARK_OPT_SMART);
        for (char const* const extension : { "table", "strikethrough", "tasklist" })
            cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(extension));
        cmark_parser_feed(parser, text.data(), text.size());
        m_root.reset(cmark_parser_finish(parser));
        cmark_parser_free(parser);
    }

    cmark_node* root() const { return m_root.get(); }

    // Calls `enter` for each node, which says whether to go into it, and `leave` for each that was gone into.
    template<typename Enter, typename Leave>
    static void walk(cmark_node* root, Enter enter, Leave leave)
    {
        for (auto* node = root; node;) {
            bool const goesIn = enter(node);
            if (auto* const child = goesIn ? cmark_node_first_child(node) : nullptr) {
                node = child;
                continue;
            }
            if (goesIn)
                leave(node);
            while (node != root && !cmark_node_next(node)) {
                node = cmark_node_parent(node);
                leave(node);
            }
            node = node == root ? nullptr : cmark_node_next(node);
        }
    }

    static std::string_view typeOf(cmark_node* node) { return cmark_node_get_type_string(node); }

private:
    struct Free {
        void operator()(cmark_node* node) const { cmark_node_free(node); }
    };

    std::unique_ptr<cmark_node, Free> m_root;
};

// A string in a dump, so that no content can be taken for structure.
inline std::string quoted(std::string_view text)
{
    return ' ' + std::to_string(text.size()) + ':' + std::string(text);
}

inline std::string quoted(QStringView text)
{
    return quoted(std::string_view(text.toUtf8().toStdString()));
}

inline std::string quoted(std::optional<QStringView> text)
{
    return text ? quoted(*text) : " -";
}

// The same of a string of the parser's, in which empty counts as absent.
inline std::string quotedUnlessEmpty(char const* text)
{
    return text && *text ? quoted(std::string_view(text)) : " -";
}

}
