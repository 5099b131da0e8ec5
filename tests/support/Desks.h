#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <ostream>

namespace Quillory {

template<typename Made>
struct DeskMaker {
    char const* name;
};

// What a contract suite is played on: a desk with the fake, or one with the real thing.
template<typename Desk>
struct NamedDesk {
    template<typename Made>
    NamedDesk(DeskMaker<Made> maker)
        : name(maker.name)
        , make([]() -> std::unique_ptr<Desk> { return std::make_unique<Made>(); })
    {
    }

    char const* name;
    std::unique_ptr<Desk> (*make)();
};

template<typename Desk>
void PrintTo(NamedDesk<Desk> const& desk, std::ostream* out)
{
    *out << desk.name;
}

template<typename Desk>
using ContractOn = testing::TestWithParam<NamedDesk<Desk>>;

// The parameter of a suite that is instantiated with the desk `Made`.
template<typename Made>
auto deskOf(char const* name)
{
    return testing::Values(DeskMaker<Made> { name });
}

}
