#pragma once

#include "platform/KeyboardLayout.h"

#include "support/Desks.h"

#include <functional>

namespace Quillory {

// A desk whose keyboard is labelled anew: "us" or "fr", of which the contract asks for the keys A and Q alone.
class KeyboardLayoutDesk {
public:
    virtual ~KeyboardLayoutDesk() = default;

    virtual KeyboardLayout& layout() = 0;
    virtual void choose(QString const& name) = 0;
    virtual bool comesTrue(std::function<bool()> const& condition) = 0;
};

class KeyboardLayoutContract : public ContractOn<KeyboardLayoutDesk> {
protected:
    static constexpr std::uint16_t keyA = 0, keyQ = 12, escape = 53, functionKey = 63;
    std::unique_ptr<KeyboardLayoutDesk> desk = GetParam().make();
};

TEST_P(KeyboardLayoutContract, Keys_and_symbols_follow_the_layout_and_its_changes_are_told_until_nobody_observes)
{
    auto& layout = desk->layout();
    int changes = 0;
    auto observation = layout.observeChanges([&] { ++changes; });
    EXPECT_EQ(layout.character(keyA), QStringLiteral("a"));
    EXPECT_EQ(layout.keyCode(QStringLiteral("a")), keyA);
    desk->choose(QStringLiteral("fr"));
    EXPECT_TRUE(desk->comesTrue([&] { return changes > 0; }));
    EXPECT_EQ(layout.character(keyA), QStringLiteral("q"));
    EXPECT_EQ(layout.keyCode(QStringLiteral("a")), keyQ);
    for (auto const key : { escape, functionKey })
        EXPECT_EQ(layout.character(key), std::nullopt);
    EXPECT_EQ(layout.keyCode(QStringLiteral("no such key")), std::nullopt);
    observation.end();
    int const told = changes;
    desk->choose(QStringLiteral("us"));
    EXPECT_TRUE(desk->comesTrue([&] { return layout.character(keyA) == QStringLiteral("a"); }));
    EXPECT_EQ(changes, told);
}

}
