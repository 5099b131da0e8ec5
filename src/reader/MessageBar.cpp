#include "reader/MessageBar.h"

#include "reader/BarButton.h"
#include "reader/Panes.h"

#include <QHBoxLayout>

namespace Quillory {

MessageBar::MessageBar(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_text(new BannerLabel(this))
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 4, 8, 4);
    row->addWidget(m_text, 1);
    auto* const hideButton = makeCloseButton(this, tr("Dismiss message"), tr("Hide this message"));
    connect(hideButton, &BarButton::clicked, this, [this] { m_store.message.assignAs<MessageBar>(std::nullopt); });
    row->addWidget(hideButton, 0, Qt::AlignTop);
    hide();
}

void MessageBar::refresh(ReaderWindowState const& state)
{
    m_text->say(state.message.value_or(QString()));
    setVisible(state.message.has_value());
}

}
