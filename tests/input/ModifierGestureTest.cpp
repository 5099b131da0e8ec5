#include "input/ModifierGesture.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

TEST(ModifierGesture, Each_one_has_its_text_its_label_and_its_two_keys)
{
    struct Case {
        QString raw;
        QString label;
        std::uint32_t flag;
        std::vector<std::uint16_t> keys;
    };
    std::vector<Case> const cases {
        { QStringLiteral("off"), QStringLiteral("Off"), 0, {} },
        { QStringLiteral("shift"), QStringLiteral("Double Shift, then hold"), 0x20000, { 56, 60 } },
        { QStringLiteral("option"), QStringLiteral("Double Option, then hold"), 0x80000, { 58, 61 } },
    };
    ASSERT_EQ(cases.size(), allModifierGestures.size());
    for (std::size_t index = 0; index < cases.size(); ++index) {
        auto const gesture = allModifierGestures[index];
        EXPECT_EQ(rawValue(gesture), cases[index].raw);
        EXPECT_EQ(modifierGestureFromRawValue(cases[index].raw), gesture);
        EXPECT_EQ(displayLabel(gesture), cases[index].label);
        EXPECT_EQ(static_cast<std::uint32_t>(modifierFlag(gesture)), cases[index].flag);
        EXPECT_THAT(keyCodes(gesture), testing::ElementsAreArray(cases[index].keys));
    }
    for (auto const* other : { "Shift", "", "shift ", "command" })
        EXPECT_EQ(modifierGestureFromRawValue(QString::fromLatin1(other)), std::nullopt);
}

}
}
