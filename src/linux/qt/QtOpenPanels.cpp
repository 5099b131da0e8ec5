#include "linux/qt/QtOpenPanels.h"

#include "linux/qt/QtOpenPanel.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Quillory {

std::unique_ptr<OpenPanel> QtOpenPanels::openPanel()
{
    return std::make_unique<QtOpenPanel>(m_lastFolder);
}

bool QtOpenPanels::canAttachTo(std::uint64_t window) const
{
    auto const* const widget = QWidget::find(static_cast<WId>(window));
    if (!widget || !widget->isVisible())
        return false;
    auto const all = QGuiApplication::topLevelWindows();
    return std::ranges::none_of(all, [handle = widget->window()->windowHandle()](QWindow const* other) {
        return other->isVisible() && other->modality() != Qt::NonModal && other->transientParent() == handle;
    });
}

// The last of the places, since the user's own come first.
QString QtOpenPanels::applicationsFolder() const
{
    auto folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    folders.removeIf([](QString const& folder) { return !QDir(folder).exists(); });
    return folders.isEmpty() ? QDir::rootPath() : folders.last();
}

}
