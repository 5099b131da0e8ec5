#include "settings/SettingsSection.h"

#include "reader/Panes.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

constexpr int padding = 14; // points, as all that follows
constexpr int rowGap = 8;
constexpr int columnGap = 12;
constexpr int titleGap = 6;
constexpr int charactersForColumns = 62; // of the whole section; below that labels stand over their controls

char const* nameOf(SettingsSection::Look look)
{
    switch (look) {
    case SettingsSection::Look::secondary:
        return "secondary";
    case SettingsSection::Look::warning:
        return "caption";
    default:
        return "";
    }
}

QLabel* makeText(QString const& text, SettingsSection::Look look, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setObjectName(QLatin1StringView(nameOf(look)));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}

SettingsSection::SettingsSection(QString const& title, QWidget* parent)
    : QWidget(parent)
    , m_card(new QWidget(this))
    , m_grid(new QGridLayout(m_card))
{
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(titleGap);
    auto* const heading = makeText(title, Look::plain, this);
    heading->setObjectName(QStringLiteral("sectionTitle"));
    rows->addWidget(heading);
    rows->addWidget(m_card);
    setAccessibleName(title);
    makePane(*m_card, "card");
    m_grid->setContentsMargins(padding, padding, padding, padding);
    m_grid->setVerticalSpacing(rowGap);
    m_grid->setHorizontalSpacing(columnGap);
    m_grid->setColumnStretch(1, 1);
}

QLabel* SettingsSection::addText(QString const& text, Look look)
{
    auto* const label = makeText(text, look, m_card);
    add({ .control = label });
    return label;
}

QLabel* SettingsSection::addNote(QString const& text)
{
    auto* const label = makeText(text, Look::secondary, m_card);
    add({ .control = label, .isIndented = true });
    return label;
}

QLabel* SettingsSection::addRow(QString const& text, QWidget* control)
{
    auto* const label = makeText(text, Look::plain, m_card);
    label->setWordWrap(false);
    label->setBuddy(control);
    add({ .label = label, .control = control, .isIndented = true });
    return label;
}

void SettingsSection::addRow(QWidget* control)
{
    add({ .control = control });
}

void SettingsSection::add(Row const& row)
{
    m_rows.append(row);
    layOut();
}

// Rows that are hidden take no room.
void SettingsSection::layOut()
{
    int line = 0;
    for (auto const& row : std::as_const(m_rows)) {
        bool const isIndented = row.isIndented && m_isInColumns;
        auto const side = row.control->sizePolicy().horizontalPolicy() == QSizePolicy::Fixed ? Qt::AlignLeft
                                                                                             : Qt::Alignment();
        if (row.label && isIndented)
            m_grid->addWidget(row.label, line, 0, Qt::AlignRight | Qt::AlignVCenter);
        else if (row.label)
            m_grid->addWidget(row.label, line++, 0, 1, 2);
        m_grid->addWidget(row.control, line++, isIndented ? 1 : 0, 1, isIndented ? 1 : 2, side);
    }
}

bool SettingsSection::hasTwoColumns() const
{
    return width() >= charactersForColumns * fontMetrics().averageCharWidth();
}

QSize SettingsSection::minimumSizeHint() const
{
    int widest = 0;
    for (auto const& row : m_rows) {
        if (!row.control->isHidden())
            widest = std::max({ widest, row.control->minimumSizeHint().width(),
                row.label ? row.label->minimumSizeHint().width() : 0 });
    }
    constexpr int borders = 2;
    return { widest + 2 * padding + borders, QWidget::minimumSizeHint().height() };
}

void SettingsSection::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (std::exchange(m_isInColumns, hasTwoColumns()) != m_isInColumns)
        layOut();
}

void SettingsSection::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && std::exchange(m_isInColumns, hasTwoColumns()) != m_isInColumns)
        layOut();
}

}
