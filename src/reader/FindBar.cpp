#include "reader/FindBar.h"

#include "reader/BarButton.h"
#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace Quillory {

namespace {

constexpr int narrowestField = 60; // points

}

FindBar::FindBar(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_field(new QLineEdit(this))
    , m_status(new QLabel(this))
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 5, 8, 5);
    row->setSpacing(4);
    m_field->setPlaceholderText(tr("Find in this sheet"));
    m_field->setAccessibleName(tr("Find in this sheet"));
    setHelp(*m_field, tr("Find text in the current sheet; press Return for the next match"));
    m_field->setMinimumWidth(narrowestField);
    row->addWidget(m_field, 1);
    m_status->setObjectName(QStringLiteral("secondary"));
    row->addWidget(m_status);

    using enum LibraryStore::FindDirection;
    auto const addButton = [&](char16_t const* symbol, QString const& label, QString const& help, auto action) {
        auto* const button = new BarButton(QString::fromUtf16(symbol), label, help, this);
        connect(button, &BarButton::clicked, this, action);
        row->addWidget(button);
    };
    addButton(u"chevron.up", tr("Previous match"), tr("Select the previous matching text"),
        [this] { m_store.requestFind(backwards); });
    addButton(u"chevron.down", tr("Next match"), tr("Select the next matching text"),
        [this] { m_store.requestFind(forwards); });
    addButton(u"xmark", tr("Close find"), tr("Close search and clear the search text"), [this] { Q_EMIT closed(); });
    connect(m_field, &QLineEdit::textEdited, this, &FindBar::queryEdited);
    connect(m_field, &QLineEdit::returnPressed, this, [this] { m_store.requestFind(forwards); });
    hide();
}

void FindBar::refresh(ReaderWindowState const& state)
{
    if (m_field->text() != state.findQuery)
        m_field->setText(state.findQuery);
    if (m_status->text() != state.findStatus) {
        m_status->setText(state.findStatus);
        m_field->setAccessibleDescription(state.findStatus);
    }
    setVisible(state.findVisible);
}

void FindBar::takeKeyboard()
{
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

}
