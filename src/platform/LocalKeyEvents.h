#pragma once

#include "platform/ModifierFlags.h"
#include "platform/Registration.h"

#include <cstdint>
#include <functional>

namespace Quillory {

// A key event on its way to one of the program's own windows or menus.
struct RawKeyEvent {
    enum class Kind { down, up };
    enum class Repeat { no, yes };

    Kind kind = Kind::down;
    std::uint16_t keyCode = 0; // virtual
    ModifierFlags modifiers = ModifierFlags::none;
    Repeat repeat = Repeat::no;

    bool operator==(RawKeyEvent const&) const = default;
};

// The program's own key events, seen before whoever they are meant for. Main thread only.
class LocalKeyEvents {
public:
    enum class Answer { passOn, swallow };
    using Monitor = std::function<Answer(RawKeyEvent const&)>;

    virtual ~LocalKeyEvents() = default;

    // An event that the monitor swallows goes no further.
    virtual Registration observe(Monitor monitor) = 0;
};

}
