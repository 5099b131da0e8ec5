#include "reader/BottomBar.h"

#include "reader/BarButton.h"
#include "reader/ElidedLabel.h"
#include "reader/Panes.h"

#include <QHBoxLayout>

namespace Quillory {

BottomBar::BottomBar(LibraryStore& store, Executor& executor, QWidget* parent)
    : QWidget(parent)
    , m_previous(new BarButton(QStringLiteral("chevron.left"), tr("Previous sheet"),
          tr("Read the previous cheat sheet in your library"), this))
    , m_next(new BarButton(
          QStringLiteral("chevron.right"), tr("Next sheet"), tr("Read the next cheat sheet in your library"), this))
    , m_format(new ElidedLabel(this))
    , m_progress(new BusyIndicator(executor, this))
    , m_actions(new BarButton(QStringLiteral("ellipsis.circle"), tr("Reader actions"),
          tr("Reader actions: find, refresh, open in editor, and manage your library"), this))
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->setSpacing(4);
    connect(m_previous, &BarButton::clicked, this, [&store] { store.selectAdjacent(-1); });
    connect(m_next, &BarButton::clicked, this, [&store] { store.selectAdjacent(1); });
    m_format->setObjectName(QStringLiteral("secondary"));
    row->addWidget(m_previous);
    row->addWidget(m_next);
    row->addSpacing(4);
    row->addWidget(m_format, 1);
    row->addWidget(m_progress);
    row->addWidget(m_actions);
}

void BottomBar::refresh(ReaderWindowState const& state)
{
    m_previous->setEnabled(state.canGoBack);
    m_next->setEnabled(state.canGoForward);
    m_format->setText(state.format);
    m_progress->setBusy(state.busy);
}

}
