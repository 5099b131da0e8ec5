#pragma once

#include "platform/OpenPanels.h"

#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace Quillory {

// File dialogs that the test answers. At most one is open at a time.
class FakeOpenPanels final : public OpenPanels {
public:
    std::unique_ptr<OpenPanel> openPanel() override { return std::make_unique<Panel>(*this); }
    bool canAttachTo(std::uint64_t window) const override
    {
        return !m_open && std::ranges::find(m_windows, window) != m_windows.end();
    }
    QString applicationsFolder() const override { return QStringLiteral("/applications"); }

    void showWindow(std::uint64_t window) { m_windows.push_back(window); }

    bool isOpen() const { return m_open; }
    // Of the latest panel.
    OpenPanelSettings const& settings() const { return m_settings; }

    // What the user does with the panel that is open.
    void choose(QString const& path)
    {
        m_open->m_url = path;
        m_open->end(OpenPanel::Response::ok);
    }
    void dismiss() { m_open->end(OpenPanel::Response::cancel); }

    QStringList calls;
    QString failure;

private:
    class Panel final : public OpenPanel {
    public:
        explicit Panel(FakeOpenPanels& owner)
            : m_owner(owner)
        {
        }
        ~Panel() override
        {
            if (m_owner.m_open == this)
                m_owner.m_open = nullptr;
        }
        Panel(Panel const&) = delete;
        Panel& operator=(Panel const&) = delete;

        void beginSheetModal(
            std::uint64_t, OpenPanelSettings const& settings, std::function<void(Response)> ended) override
        {
            m_owner.calls.append(QStringLiteral("begin"));
            m_owner.m_settings = settings;
            m_owner.m_open = this;
            m_ended = std::move(ended);
        }
        std::optional<QString> url() const override { return m_url; }
        QString failure() const override { return m_owner.failure; }
        void orderOut() override
        {
            m_owner.calls.append(QStringLiteral("orderOut"));
            m_owner.m_open = nullptr;
        }
        void cancel() override
        {
            m_owner.calls.append(QStringLiteral("cancel"));
            end(Response::cancel);
        }

        void end(Response response)
        {
            if (auto const ended = std::exchange(m_ended, nullptr))
                ended(response);
        }

        std::optional<QString> m_url;

    private:
        FakeOpenPanels& m_owner;
        std::function<void(Response)> m_ended;
    };

    std::vector<std::uint64_t> m_windows;
    Panel* m_open = nullptr;
    OpenPanelSettings m_settings;
};

}
