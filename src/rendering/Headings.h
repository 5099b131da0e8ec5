#pragma once

#include "rendering/AttributedText.h"

#include <optional>

namespace Quillory::Headings {

// The start of the first heading beyond the position, and of the last one before it.
std::optional<qsizetype> after(AttributedText const& text, qsizetype position);
std::optional<qsizetype> before(AttributedText const& text, qsizetype position);

}
