#pragma once

#include "Markdown/Document.h"
#include "support/ParserTree.h"

#include <string>

namespace Quillory {

// One line for each element: its depth, its kind by the parser's name, its payload.
std::string dumpOf(Markup::Document const& document);

// The same of the parser's tree, with the body that a table has in ours.
std::string dumpOf(ParserTree const& tree);

}
