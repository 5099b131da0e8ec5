#pragma once

namespace Quillory {

// How a structured sheet names keys: by the symbols on some keyboards, or by the words on others.
enum class KeyNames { symbols, words };

}
