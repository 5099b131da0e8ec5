#pragma once

#include "platform/Workspace.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// A desktop in memory: a test opens and closes windows and brings them to the front; what the program asked for
// is recorded.
class FakeWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override { return m_front; }
    std::optional<QRect> frontmostFrame() const override { return m_front ? frame : std::nullopt; }
    QString mainBundleIdentifier() const override { return QStringLiteral("quillory"); }

    void activate(RunningApplication const& application) override
    {
        activations.push_back(application);
        bringToFront(application.window);
    }

    void activateIgnoringOtherApps(std::uint64_t ownWindow) override
    {
        ownActivations.push_back(ownWindow);
        bringToFront(ownWindow);
    }

    bool canFetchWindows() const override { return canFetch; }

    void prepareToShow(std::uint64_t ownWindow) override { preparations.push_back(ownWindow); }

    Registration observeActivation(std::function<void(RunningApplication const&)> activated) override
    {
        auto observer = std::make_shared<Observer>(std::move(activated));
        m_observers.push_back(observer);
        return Registration([this, weak = std::weak_ptr(observer)] { std::erase(m_observers, weak.lock()); });
    }

    // What the user and the other programs do.
    void open(RunningApplication const& application) { m_windows.push_back(application); }

    void bringToFront(std::uint64_t window)
    {
        auto const found = std::ranges::find(m_windows, window, &RunningApplication::window);
        if (found == m_windows.end() || m_front == *found)
            return;
        auto const front = *found;
        m_front = front;
        std::rotate(m_windows.begin(), found, found + 1);
        for (auto const& observer : std::vector(m_observers))
            (*observer)(front);
    }

    // A window that this desktop knows nothing of has the keyboard.
    void bringForeignToFront() { m_front.reset(); }

    // Leaves the desktop without a front window if this was it.
    void close(std::uint64_t window)
    {
        std::erase_if(m_windows, [&](auto const& each) { return each.window == window; });
        if (m_front && m_front->window == window)
            m_front.reset();
    }

    // The window manager gives the front to the window that had it last.
    void hide(std::uint64_t window)
    {
        if (!m_front || m_front->window != window)
            return;
        auto const isOther = [&](auto const& each) { return each.window != window; };
        auto const next = std::ranges::find_if(m_windows, isOther);
        m_front.reset();
        if (next != m_windows.end())
            bringToFront(next->window);
    }

    std::size_t observers() const { return m_observers.size(); }

    bool canFetch = true;
    std::optional<QRect> frame; // of whatever is in front
    std::vector<RunningApplication> activations;
    std::vector<std::uint64_t> ownActivations;
    std::vector<std::uint64_t> preparations;

private:
    using Observer = std::function<void(RunningApplication const&)>;

    std::vector<RunningApplication> m_windows; // those that had the front latest come first
    std::optional<RunningApplication> m_front;
    std::vector<std::shared_ptr<Observer>> m_observers;
};

}
