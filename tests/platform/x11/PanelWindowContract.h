#pragma once

#include "platform/PanelWindow.h"

#include "support/Desks.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>

namespace Quillory {

// What every panel window must do, told with a window manager's eyes.
class PanelWindowDesk {
public:
    virtual ~PanelWindowDesk() = default;

    virtual PanelWindow& panel() = 0;

    // As the panel's owner does it.
    virtual void show() = 0;
    virtual void hide() = 0;

    virtual bool isAbove() = 0;
    virtual bool isEverywhere() = 0;
    virtual bool isOnTaskBars() = 0;

    virtual bool comesTrue(std::function<bool()> const& condition) = 0;
};

class PanelWindowContract : public ContractOn<PanelWindowDesk> {
protected:
    void setPeek(bool isPeek)
    {
        desk->panel().setLevel(isPeek ? WindowLevel::floating : WindowLevel::normal);
        desk->panel().setCollectionBehavior(isPeek ? CollectionBehavior::everywhere : CollectionBehavior::none);
    }
    bool becomes(bool isPeek)
    {
        return desk->comesTrue([&] { return desk->isAbove() == isPeek && desk->isEverywhere() == isPeek; });
    }

    std::unique_ptr<PanelWindowDesk> desk = GetParam().make();
};

TEST_P(PanelWindowContract, Level_and_place_are_switched_on_the_living_window_and_outlast_hiding)
{
    // Switched while hidden, while shown, and left alone over a hide.
    struct Step {
        char const* story;
        bool isPeek;
        bool isHiddenMeanwhile;
    };
    Step const steps[] { { "first show", true, true }, { "peek ends", false, false }, { "peek begins", true, false },
        { "hidden and shown", true, true }, { "resident at the next show", false, true },
        { "and again", false, true } };
    for (auto const& [story, isPeek, isHiddenMeanwhile] : steps) {
        SCOPED_TRACE(story);
        if (isHiddenMeanwhile)
            desk->hide();
        setPeek(isPeek);
        if (isHiddenMeanwhile)
            desk->show();
        EXPECT_TRUE(becomes(isPeek));
        EXPECT_FALSE(desk->isOnTaskBars());
    }
}

}
