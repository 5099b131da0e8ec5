#include "reader/text/PointerGesture.h"
#include "support/Test.h"

#include <string>
#include <vector>

namespace Quillory {
namespace {

enum class Selected { none, elsewhere, underPointer };

struct Step {
    char what; // v press, d the toolkit's double click, m move, ^ release
    double x = 0;
    int milliseconds = 0;
    ModifierFlags modifiers = ModifierFlags::none;
    Selected selection = Selected::none;
};

// A letter for what each step means: c, w, l select a unit, e extends, h holds; . hovers, - waits, s selects, t drags
// text; 0 nothing, p places the caret, k keeps, C is a click.
std::string meaningOf(std::vector<Step> const& steps)
{
    PointerGesture gesture;
    std::string result;
    for (auto const& [what, x, milliseconds, modifiers, selection] : steps) {
        auto const hasSelection = selection != Selected::none;
        if (what == 'm')
            result += ".-st"[static_cast<int>(gesture.move({ x, 0 }, hasSelection))];
        else if (what == '^')
            result += "0pkC"[static_cast<int>(gesture.release({ x, 0 }, modifiers, hasSelection))];
        else {
            auto const begun = gesture.press({ { x, 0 }, 1ms * milliseconds, modifiers, what == 'd', hasSelection,
                                                 selection == Selected::underPointer },
                { 5, 400ms, 10 });
            result += begun == PointerGesture::OnPress::selectUnit ? "cwl"[static_cast<int>(gesture.unit())]
                                                                   : " eh"[static_cast<int>(begun)];
        }
    }
    return result;
}

TEST(PointerGesture, Tells_clicks_selections_and_drags_apart)
{
    auto const none = ModifierFlags::none;
    struct Case {
        std::string name;
        std::vector<Step> steps;
        std::string meaning;
    };
    Case const cases[] {
        { "a click", { { 'v' }, { '^' }, { 'm', 50 } }, "cC." },
        { "a hand that trembles", { { 'v' }, { 'm', 4 }, { '^', 4 } }, "c-C" },
        { "a drag of five points", { { 'v' }, { 'm', 5 }, { '^', 5 } }, "csk" },
        { "back to the start of a selection", { { 'v' }, { 'm', 0, 0, none, Selected::elsewhere } }, "cs" },
        { "Shift", { { 'v', 0, 0, ModifierFlags::shift }, { '^', 0, 0, ModifierFlags::shift } }, "ek" },
        { "Alt", { { 'v' }, { '^', 0, 0, ModifierFlags::option } }, "ck" },
        { "Super", { { 'v' }, { '^', 0, 0, ModifierFlags::command } }, "ck" },
        { "a selection goes", { { 'v', 0, 0, none, Selected::elsewhere }, { '^' } }, "ck" },
        { "a selection came", { { 'v' }, { '^', 0, 0, none, Selected::elsewhere } }, "ck" },
        { "in time and near", { { 'v', 0, 9000 }, { 'v', 5, 9399 }, { 'v', 5, 9798 }, { '^', 5 } }, "cwlk" },
        { "late", { { 'v', 0, 9000 }, { 'v', 0, 9400 } }, "cc" },
        { "far", { { 'v', 0, 9000 }, { 'v', 6, 9001 } }, "cc" },
        { "late by our count, not by the toolkit's", { { 'v', 0, 9000 }, { 'd', 0, 9900 } }, "cw" },
        { "a clock that went round", { { 'v', 0, 9000 }, { 'v', 0, 1 } }, "cc" },
        { "held text let go", { { 'v', 0, 0, none, Selected::underPointer }, { 'm', 9 }, { '^', 9 } }, "h-p" },
        { "held text dragged", { { 'v', 0, 0, none, Selected::underPointer }, { 'm', 10 }, { '^', 10 } }, "ht0" },
        { "Shift on held text", { { 'v', 0, 0, ModifierFlags::shift, Selected::underPointer } }, "e" },
        { "words move at once", { { 'd' }, { 'm', 1 } }, "ws" },
    };
    for (auto const& [name, steps, meaning] : cases)
        EXPECT_EQ(meaningOf(steps), meaning) << name;
}

}
}
