#pragma once

namespace Quillory::Markup {

// An option set. The program parses with the empty set, which is smart punctuation and the three extensions.
enum class ParseOptions { none = 0 };

}
