#include "reader/ReaderDialogs.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "reader/ActionsMenu.h"
#include "reader/BarButton.h"
#include "reader/SheetOverlay.h"
#include "reader/StarterSelectionView.h"
#include "reader/TextSizePopover.h"

#include <QMenu>

#include <utility>

namespace Quillory {

ReaderDialogs::ReaderDialogs(LibraryStore& store, ReaderServices services, QWidget& view)
    : QObject(&view)
    , m_store(store)
    , m_services(std::move(services))
    , m_view(view)
{
}

void ReaderDialogs::toggleTextSize(BarButton& opener)
{
    if (!m_textSize) {
        m_textSize = new TextSizePopover(opener, &m_view);
        m_textSize->setTextSize(m_store.textSize);
        connect(m_textSize, &TextSizePopover::textSizeChosen, this, [this](double size) { m_store.setTextSize(size); });
    }
    HoverHelpTrackingView::of(opener).dismiss(); // it would lie over the popover
    m_textSize->isHidden() ? m_textSize->open() : m_textSize->close();
}

void ReaderDialogs::showStarters()
{
    if (m_starters)
        return;
    auto* const selection = new StarterSelectionView(&m_view);
    m_starters = new SheetOverlay(selection, m_view);
    connect(selection, &StarterSelectionView::cancelled, this, &ReaderDialogs::closeStarters);
    connect(selection, &StarterSelectionView::chosen, this, [this](QStringList const& names) {
        closeStarters();
        installStarters(names);
    });
}

// Without a folder there is nowhere to copy them to: it is asked for first.
void ReaderDialogs::installStarters(QStringList const& names)
{
    if (m_store.folder.value())
        return m_store.installStarters(names);
    m_startersToInstall = names;
    chooseFolder();
}

void ReaderDialogs::showActions(BarButton const& opener, std::function<void()> find)
{
    ActionsMenu const actions { m_store, std::move(find), [this] { showStarters(); }, m_services.openSettings,
        m_services.quit };
    auto* const menu = actions.make(ReaderWindowState::of(m_store), m_view).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto const size = menu->sizeHint();
    menu->popup(opener.mapToGlobal(QPoint(opener.width() - size.width(), -size.height())));
}

void ReaderDialogs::chooseFolder()
{
    m_store.chooseFolder(m_view.window()->winId());
}

void ReaderDialogs::refresh(ReaderWindowState const& state)
{
    if (m_textSize)
        m_textSize->setTextSize(state.textSize);
    if (state.hasFilePanel || m_startersToInstall.isEmpty())
        return;
    auto const names = std::exchange(m_startersToInstall, {});
    if (state.hasFolder)
        m_store.installStarters(names);
}

QWidget* ReaderDialogs::keyboardScope() const
{
    if (m_starters)
        return m_starters;
    return m_textSize && !m_textSize->isHidden() ? m_textSize : nullptr;
}

bool ReaderDialogs::areStartersShown() const
{
    return !m_starters.isNull();
}

void ReaderDialogs::closeStarters()
{
    if (m_starters)
        m_starters->close();
    m_starters = nullptr;
}

void ReaderDialogs::closeAll()
{
    closeStarters();
    if (m_textSize)
        m_textSize->close();
}

}
