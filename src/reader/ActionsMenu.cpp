#include "reader/ActionsMenu.h"

#include "presentation/hover_help/MenuHelp.h"

#include <QMenu>

namespace Quillory {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ActionsMenu)
};

}

std::unique_ptr<QMenu> ActionsMenu::make(ReaderWindowState const& state, QWidget& parent) const
{
    auto menu = std::make_unique<QMenu>(&parent);
    auto const add = [&](QString const& title, QString const& help, bool isEnabled, std::function<void()> action) {
        auto* const item = menu->addAction(title, std::move(action));
        item->setStatusTip(help);
        item->setEnabled(isEnabled);
    };
    auto const window = [&parent] { return parent.window()->winId(); };
    auto& library = store;
    bool const hasSheet = state.hasSheet();
    bool const canAsk = !state.hasFilePanel;
    add(Texts::tr("Find in sheet\tCtrl+F"), Texts::tr("Search the current sheet’s text"), true, find);
    add(Texts::tr("Refresh\tCtrl+R"), Texts::tr("Reload cheat sheets from your library folder"), true,
        [&library] { library.refresh(); });
    add(Texts::tr("Open in default editor"), Texts::tr("Open the sheet source in your default editor"), hasSheet,
        [&library] { library.openSheet(); });
    add(Texts::tr("Open With…"), {}, hasSheet && canAsk,
        [&library, window] { library.openSheetWith(std::nullopt, window()); });
    add(Texts::tr("Reveal in Finder"), Texts::tr("Show this sheet in Finder"), hasSheet,
        [&library] { library.revealSheet(); });
    add(Texts::tr("Choose folder…"), Texts::tr("Choose the folder containing your cheat sheets"), canAsk,
        [&library, window] { library.chooseFolder(window()); });
    add(Texts::tr("Install starter sheets…"), Texts::tr("Add bundled example sheets without replacing existing files"),
        state.hasFolder, installStarters);
    add(Texts::tr("Settings…"), {}, static_cast<bool>(openSettings), openSettings);
    add(Texts::tr("Quit Quillory\tCtrl+Q"), {}, true, quit);
    MenuHelp::show(*menu);
    return menu;
}

}
