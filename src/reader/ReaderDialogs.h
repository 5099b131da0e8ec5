#pragma once

#include "library/LibraryStore.h"
#include "reader/ReaderServices.h"
#include "reader/ReaderWindowState.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

namespace Quillory {

class BarButton;
class SheetOverlay;
class TextSizePopover;

// What opens over the window: the text size, the choice of starters, the actions menu and the folder's dialog. Each is made
// when it is first asked for. GUI thread only.
class ReaderDialogs : public QObject {
    Q_OBJECT
public:
    // Belongs to the view, over which it opens. The store outlives it.
    ReaderDialogs(LibraryStore& store, ReaderServices services, QWidget& view);

    void toggleTextSize(BarButton& opener);
    void showStarters();
    void showActions(BarButton const& opener, std::function<void()> find);
    void chooseFolder();

    void refresh(ReaderWindowState const& state);

    // That keeps the keyboard within itself; null when nothing does.
    QWidget* keyboardScope() const;
    bool areStartersShown() const;
    void closeStarters();
    void closeAll();

private:
    void installStarters(QStringList const& names);

    LibraryStore& m_store;
    ReaderServices m_services;
    QWidget& m_view;
    TextSizePopover* m_textSize = nullptr;
    QPointer<SheetOverlay> m_starters; // while they are shown
    QStringList m_startersToInstall; // once a folder is chosen
};

}
