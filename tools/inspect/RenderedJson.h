#pragma once

#include "JsonWriter.h"

#include "rendering/RenderedMarkdown.h"

namespace Quillory {

// Writes the text, its runs with the attributes that each has, and the copy targets as one object.
void writeRendered(JsonWriter& json, RenderedMarkdown const& rendered);

}
