#pragma once

#include "textlayout/LayoutContext.h"

namespace Quillory {

// The width in points at which no line that wraps at the container wraps, with what its style keeps free beside it.
// 0 when there is none. Past `enough` it is a bound.
double codeWidth(LayoutContext const& context, double enough);

}
