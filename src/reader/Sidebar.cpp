#include "reader/Sidebar.h"

#include "reader/Panes.h"

#include <QDir>
#include <QLabel>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int sidebarWidth = 200; // points, as all that follows
constexpr int aside = 8;
constexpr int spacing = 6;
constexpr int widthOfPath = 480; // two lines of hover help

}

Sidebar::Sidebar(LibraryStore& store, std::function<void()> const& giveUpKeyboard, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_search(new LibrarySearchField(store, this))
    , m_list(new SheetList(store, this))
    , m_heading(new QLabel(tr("YOUR SHEETS"), this))
    , m_nothing(new QLabel(tr("No matching sheets"), this))
{
    makePane(*this, "chrome");
    setFixedWidth(sidebarWidth);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(aside, aside + 2, aside, aside);
    rows->setSpacing(spacing);
    m_heading->setObjectName(QStringLiteral("heading"));
    m_heading->setContentsMargins(SheetRowDelegate::inset, 0, 0, 0);
    rows->addWidget(m_heading);
    rows->addWidget(m_search);
    m_nothing->setObjectName(QStringLiteral("secondary"));
    m_nothing->setContentsMargins(SheetRowDelegate::inset, spacing, 0, 0);
    m_nothing->setAlignment(Qt::AlignTop);
    rows->addWidget(m_nothing, 1);
    rows->addWidget(m_list, 1);

    connect(m_search, &LibrarySearchField::accepted, this, giveUpKeyboard);
    connect(m_list, &SheetList::typed, m_search, &LibrarySearchField::type);
    connect(m_list, &SheetList::accepted, this, [this, giveUpKeyboard] {
        if (m_store.acceptLibrarySearch())
            giveUpKeyboard();
    });
}

void Sidebar::refresh()
{
    m_search->refresh();
    m_list->refresh();
    auto const path = QDir::toNativeSeparators(m_store.folder.value().value_or(QString()));
    setHelp(*m_heading, m_heading->fontMetrics().elidedText(path, Qt::ElideMiddle, widthOfPath));
    bool const isEmpty = m_list->model()->rowCount() == 0;
    // Whether a folder has sheets is known when it has been read.
    bool const isKnown = !m_store.busy || !m_store.folder.value() || !m_store.sheets.value().isEmpty();
    m_nothing->setVisible(isEmpty && isKnown);
    m_list->setVisible(!m_nothing->isVisibleTo(this));
}

}
