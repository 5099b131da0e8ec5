#include "PanelWindowContract.h"

#include "support/FakePanelWindow.h"

namespace Quillory {
namespace {

class FakePanelWindowDesk final : public PanelWindowDesk {
public:
    PanelWindow& panel() override { return m_panel; }
    void show() override
    {
        m_panel.willShow();
        m_panel.didShow();
    }
    void hide() override { m_panel.didHide(); }
    bool isAbove() override { return m_panel.isAbove(); }
    bool isEverywhere() override { return m_panel.isEverywhere(); }
    bool isOnTaskBars() override { return false; }
    bool comesTrue(std::function<bool()> const& condition) override { return condition(); }

private:
    FakePanelWindow m_panel;
};

INSTANTIATE_TEST_SUITE_P(Fake, PanelWindowContract, deskOf<FakePanelWindowDesk>("fake"));

}
}
