#pragma once

#include "platform/Screens.h"

#include "support/Desks.h"

#include <functional>

namespace Quillory {

// A desk whose screens are plugged in and out by hand, unscaled and without bars.
class ScreensDesk {
public:
    virtual ~ScreensDesk() = default;

    virtual Screens& screens() = 0;
    virtual void connect(QList<QRect> const& frames) = 0;
    virtual void movePointer(QPoint place) = 0;
    virtual bool comesTrue(std::function<bool()> const& condition) = 0;
};

class ScreensContract : public ContractOn<ScreensDesk> {
protected:
    bool areConnected(QList<QRect> const& frames)
    {
        return desk->comesTrue([&] {
            QList<Screens::Screen> expected;
            for (auto const& frame : frames)
                expected.append({ frame, frame, frame });
            return desk->screens().screens() == expected;
        });
    }

    QRect const left { 0, 0, 640, 900 };
    QRect const right { 640, 0, 640, 900 };
    std::unique_ptr<ScreensDesk> desk = GetParam().make();
};

TEST_P(ScreensContract, Screens_that_come_and_go_are_told_until_nobody_observes)
{
    int changes = 0;
    auto observation = desk->screens().observeChanges([&] { ++changes; });
    desk->connect({ left, right });
    EXPECT_TRUE(areConnected({ left, right }));
    EXPECT_TRUE(desk->comesTrue([&] { return changes > 0; }));
    observation.end();
    int const told = changes;
    desk->connect({ left });
    EXPECT_TRUE(areConnected({ left }));
    EXPECT_EQ(changes, told);
    for (auto const place : { QPoint(3, 4), QPoint(600, 800) }) {
        desk->movePointer(place);
        EXPECT_TRUE(desk->comesTrue([&] { return desk->screens().pointer() == place; }));
    }
}

}
