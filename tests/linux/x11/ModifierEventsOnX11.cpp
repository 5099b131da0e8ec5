#include "ModifierEventsContract.h"
#include "X11ModifierEventsDesk.h"

namespace Quillory {
namespace {

INSTANTIATE_TEST_SUITE_P(X11, ModifierEventsContract, deskOf<X11ModifierEventsDesk>("x11"));

}

}
