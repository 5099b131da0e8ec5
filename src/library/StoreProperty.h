#pragma once

#include "platform/OwnedProperty.h"

namespace Quillory {

class LibraryStore;

template<typename Value, typename Writer = void>
using StoreProperty = OwnedProperty<Value, LibraryStore, Writer>;

}
