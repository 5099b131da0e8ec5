#include "platform/Observers.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace Quillory {
namespace {

TEST(Observers, A_call_reaches_who_observed_at_its_start_and_still_does)
{
    std::optional<Observers<void()>> observers(std::in_place);
    std::string told;
    Registration ended, late, once;
    auto const changing = observers->add([&] {
        told += "changing ";
        ended.end();
        if (!late.isActive())
            late = observers->add([&] { told += "late "; });
    });
    ended = observers->add([&] { told += "ended "; });
    once = observers->add([&] {
        once.end();
        told += "once ";
    });
    observers->tell();
    EXPECT_EQ(told, "changing once ");
    observers->tell();
    EXPECT_EQ(told, "changing once changing late ");
    observers.reset(); // before its registrations
}

}
}
