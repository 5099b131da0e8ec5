#include "reader/Sidebar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int sidebarWidth = 200; // points

}

Sidebar::Sidebar(LibraryStore& store, Executor& executor, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_list(new SheetList(store, this))
    , m_busy(new BusyIndicator(executor, this))
{
    makePane(*this, "chrome");
    setFixedWidth(sidebarWidth);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(8, 10, 8, 8);
    rows->setSpacing(6);
    auto* const heading = new QLabel(tr("YOUR SHEETS"), this);
    heading->setObjectName(QStringLiteral("heading"));
    heading->setContentsMargins(6, 0, 0, 0);
    auto* const top = new QHBoxLayout;
    top->addWidget(heading, 1);
    top->addWidget(m_busy);
    rows->addLayout(top);
    rows->addWidget(m_list, 1);
}

void Sidebar::refresh()
{
    m_list->refresh();
    m_busy->setBusy(m_store.busy);
}

}
