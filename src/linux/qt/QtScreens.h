#pragma once

#include "platform/Screens.h"

namespace Quillory {

// The screens as the toolkit knows them. Needs a QGuiApplication.
class QtScreens final : public Screens {
public:
    QList<Screen> screens() const override;
    Registration observeChanges(std::function<void()> changed) override;
    QPoint pointer() const override;
};

}
