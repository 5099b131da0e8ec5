#include "ModifierEventsContract.h"
#include "X11ModifierEventsDesk.h"

namespace Quillory {
namespace {

INSTANTIATE_TEST_SUITE_P(X11, ModifierEventsContract,
    testing::Values(NamedModifierEventsDesk { "x11", [] { return std::make_unique<X11ModifierEventsDesk>(); } }));

}

}
