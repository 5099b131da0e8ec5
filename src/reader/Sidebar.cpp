#include "reader/Sidebar.h"

#include "reader/Panes.h"

#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int sidebarWidth = 200; // points

}

Sidebar::Sidebar(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_list(new SheetList(store, this))
{
    makePane(*this, "chrome");
    setFixedWidth(sidebarWidth);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(8, 10, 8, 8);
    rows->setSpacing(6);
    auto* const heading = new QLabel(tr("YOUR SHEETS"), this);
    heading->setObjectName(QStringLiteral("heading"));
    heading->setContentsMargins(6, 0, 0, 0);
    rows->addWidget(heading);
    rows->addWidget(m_list, 1);
}

}
