#include "KeyboardLayoutContract.h"
#include "LocalKeyEventsContract.h"
#include "ScreensContract.h"

#include "support/FakeKeyboardLayout.h"
#include "support/FakeLocalKeyEvents.h"
#include "support/FakeScreens.h"

namespace Quillory {
namespace {

class FakeScreensDesk final : public ScreensDesk {
public:
    Screens& screens() override { return m_screens; }
    void connect(QList<QRect> const& frames) override { m_screens.connect(frames); }
    void movePointer(QPoint place) override { m_screens.pointerAt = place; }
    bool comesTrue(std::function<bool()> const& condition) override { return condition(); }

private:
    FakeScreens m_screens { { QRect(0, 0, 1280, 900) } };
};

class FakeLocalKeyEventsDesk final : public LocalKeyEventsDesk {
public:
    LocalKeyEvents& events() override { return m_events; }
    void press(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        auto const answer = m_events.send({ RawKeyEvent::Kind::down, keyCode, modifiers });
        m_presses += answer == LocalKeyEvents::Answer::passOn;
    }
    void release(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        m_events.send({ RawKeyEvent::Kind::up, keyCode, modifiers });
    }
    int pressesInTheWindow() const override { return m_presses; }

private:
    FakeLocalKeyEvents m_events;
    int m_presses = 0;
};

class FakeKeyboardLayoutDesk final : public KeyboardLayoutDesk {
public:
    KeyboardLayout& layout() override { return m_layout; }
    void choose(QString const& name) override { m_layout.change(keys(name)); }
    bool comesTrue(std::function<bool()> const& condition) override { return condition(); }

private:
    static std::map<std::uint16_t, QString> keys(QString const& name)
    {
        bool const isFrench = name == QStringLiteral("fr");
        return { { 0, isFrench ? QStringLiteral("q") : QStringLiteral("a") },
            { 12, isFrench ? QStringLiteral("a") : QStringLiteral("q") } };
    }

    FakeKeyboardLayout m_layout { keys(QStringLiteral("us")) };
};

INSTANTIATE_TEST_SUITE_P(Fake, ScreensContract, deskOf<FakeScreensDesk>("fake"));
INSTANTIATE_TEST_SUITE_P(Fake, LocalKeyEventsContract, deskOf<FakeLocalKeyEventsDesk>("fake"));
INSTANTIATE_TEST_SUITE_P(Fake, KeyboardLayoutContract, deskOf<FakeKeyboardLayoutDesk>("fake"));

}
}
