#pragma once

#include <xcb/xcb.h>

// The library's header has a field with the name of a C++ keyword.
#define explicit explicitParts
#include <xcb/xkb.h>
#undef explicit
