#include "reader/MessageBar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace Quillory {

MessageBar::MessageBar(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_text(new QLabel(this))
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 6, 6, 6);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    row->addWidget(m_text, 1);
    auto* const hide = makeCloseButton(this, tr("Dismiss message"));
    setHelp(*hide, tr("Hide this message"));
    connect(hide, &QToolButton::clicked, this, [this] { m_store.message.assignAs<MessageBar>(std::nullopt); });
    row->addWidget(hide);
}

void MessageBar::refresh()
{
    auto const& message = m_store.message.value();
    setVisible(message.has_value());
    m_text->setText(message.value_or(QString()));
}

}
