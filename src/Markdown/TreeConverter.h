#pragma once

#include "Markdown/RawMarkup.h"

#include <cmark-gfm.h>

#include <cstddef>

namespace Quillory::Markup {

// The raw tree of the parser's tree, with copies of all strings. `sourceSize`, in bytes, is a guess at their length.
RawMarkupStorage convertTree(cmark_node* root, std::size_t sourceSize);

}
