#pragma once

#include "platform/PanelWindow.h"

#include <QStringList>

#include <utility>

namespace Quillory {

// A window manager's view of a window, and what was asked for it.
class FakePanelWindow final : public PanelWindow {
public:
    void setLevel(WindowLevel asked) override
    {
        if (std::exchange(level, asked) != asked && isShown)
            calls.append(QStringLiteral("setLevel"));
    }
    void setCollectionBehavior(CollectionBehavior asked) override { behavior = asked; }
    void setShadow(QMargins given, QSize) override { shadow = given; }
    bool isMinimized() const override { return false; }
    void willShow() override { calls.append(QStringLiteral("willShow")); }
    void didShow() override
    {
        calls.append(QStringLiteral("didShow"));
        isShown = true;
    }
    void didHide() override
    {
        calls.append(QStringLiteral("didHide"));
        isShown = false;
    }

    bool isAbove() const { return isShown && level == WindowLevel::floating; }
    bool isEverywhere() const { return isShown && behavior == CollectionBehavior::everywhere; }

    WindowLevel level = WindowLevel::normal;
    CollectionBehavior behavior = CollectionBehavior::none;
    QMargins shadow;
    bool isShown = false;
    QStringList calls;
};

}
