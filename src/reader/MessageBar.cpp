#include "reader/MessageBar.h"

#include "reader/BannerRow.h"
#include "reader/BarButton.h"
#include "reader/Panes.h"

#include <QHBoxLayout>

namespace Quillory {

MessageBar::MessageBar(LibraryStore& store, Announcements& announcements, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_text(new BannerLabel(announcements, this))
    , m_row(new BannerRow(m_text, this))
{
    makePane(*this, "chrome");
    auto* const columns = new QHBoxLayout(this);
    columns->setContentsMargins(16, 4, 8, 4);
    columns->addWidget(m_row, 1);
    m_refresh = m_row->addButton(tr("Refresh"), tr("Reload cheat sheets from your library folder"));
    connect(m_refresh, &BarButton::clicked, this, [this] { m_store.refresh(); });
    m_chooseFolder = m_row->addButton(tr("Choose folder"), tr("Choose the folder containing your cheat sheets"));
    connect(m_chooseFolder, &BarButton::clicked, this, &MessageBar::chooseFolder);
    auto* const hideButton = makeCloseButton(this, tr("Dismiss message"), tr("Hide this message"));
    connect(hideButton, &BarButton::clicked, this, [this] { m_store.message.assignAs<MessageBar>(std::nullopt); });
    columns->addWidget(hideButton, 0, Qt::AlignTop);
    hide();
}

void MessageBar::refresh(ReaderWindowState const& state)
{
    using enum LibraryStore::Remedy;
    m_row->offer(*m_refresh, state.remedy == refreshOrChooseFolder);
    // Without a sheet there is a way to a folder right below.
    m_row->offer(*m_chooseFolder, state.remedy != none && state.hasSheet());
    m_text->say(state.message.value_or(QString()));
    setVisible(state.message.has_value());
}

}
