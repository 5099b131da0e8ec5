#include "WorkspaceContract.h"

#include "support/FakeWorkspace.h"

namespace Quillory {
namespace {

class FakeDesk final : public WorkspaceDesk {
public:
    Workspace& workspace() override { return m_workspace; }
    std::uint64_t open(QString const& windowClass) override
    {
        m_workspace.open({ windowClass, ++m_lastWindow });
        m_workspace.bringToFront(m_lastWindow);
        return m_lastWindow;
    }
    std::uint64_t openOwn() override { return open(m_workspace.mainBundleIdentifier()); }
    void close(std::uint64_t window) override { m_workspace.close(window); }
    void choose(std::uint64_t window) override { m_workspace.bringToFront(window); }
    bool comesTrue(std::function<bool()> const& condition) override { return condition(); }

private:
    FakeWorkspace m_workspace;
    std::uint64_t m_lastWindow = 0;
};

INSTANTIATE_TEST_SUITE_P(Fake, WorkspaceContract, deskOf<FakeDesk>("fake"));

}
}
