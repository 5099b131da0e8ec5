#include "reader/FindBar.h"

#include "reader/BarButton.h"
#include "reader/Panes.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace Quillory {

namespace {

constexpr int narrowestField = 90; // points, with the status beside it
constexpr int firstButton = 2; // column

}

FindBar::FindBar(LibraryStore& store, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_field(new QLineEdit(this))
    , m_status(new QLabel(this))
    , m_row(new QGridLayout(this))
{
    makePane(*this, "chrome");
    m_row->setContentsMargins(12, 5, 8, 5);
    m_row->setSpacing(4);
    m_row->setColumnStretch(0, 1);
    m_field->setPlaceholderText(tr("Find in this sheet"));
    m_field->setAccessibleName(tr("Find in this sheet"));
    setHelp(*m_field, tr("Find text in the current sheet; press Return for the next match"));
    m_field->setMinimumWidth(0);
    m_row->addWidget(m_field, 0, 0);
    m_status->setObjectName(QStringLiteral("secondary"));
    placeStatus();

    using enum LibraryStore::FindDirection;
    auto const addButton = [&](char16_t const* symbol, QString const& label, QString const& help, auto action) {
        auto* const button = new BarButton(QString::fromUtf16(symbol), label, help, this);
        connect(button, &BarButton::clicked, this, action);
        m_row->addWidget(button, 0, firstButton + static_cast<int>(m_buttons.size()));
        m_buttons.append(button);
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
        placeStatus();
    }
    setVisible(state.findVisible);
}

// Beside the field while that leaves it enough room, else on a line of its own.
void FindBar::placeStatus()
{
    auto room = contentsRect().marginsRemoved(m_row->contentsMargins()).width();
    for (auto const* const button : m_buttons)
        room -= button->sizeHint().width() + m_row->spacing();
    bool const hasRoom = room - m_row->spacing() - m_status->sizeHint().width() >= narrowestField;
    m_status->setVisible(!m_status->text().isEmpty());
    m_row->removeWidget(m_status);
    if (hasRoom)
        m_row->addWidget(m_status, 0, 1);
    else
        m_row->addWidget(m_status, 1, 0, 1, -1);
}

void FindBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeStatus();
}

void FindBar::takeKeyboard()
{
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

}
