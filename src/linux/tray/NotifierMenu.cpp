#include "linux/tray/NotifierMenu.h"

#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

using namespace NotifierValues;

constexpr int rootNumber = 0;

// Only what differs from what the interface assumes. An underscore would mark a letter.
QVariantMap propertiesOf(StatusMenuRow const& row)
{
    if (row.isSeparator())
        return { { QStringLiteral("type"), QStringLiteral("separator") } };
    QVariantMap properties { { QStringLiteral("label"),
        QString(row.title).replace(QLatin1Char('_'), QStringLiteral("__")) } };
    if (!row.isEnabled)
        properties.insert(QStringLiteral("enabled"), false);
    if (!row.key.isEmpty()) {
        QList<QStringList> const shortcut { { QStringLiteral("Control"), row.key } };
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcut));
    }
    return properties;
}

QVariantMap selected(QVariantMap const& properties, QStringList const& wanted)
{
    if (wanted.isEmpty())
        return properties;
    QVariantMap some;
    for (auto const& name : wanted) {
        if (auto const property = properties.find(name); property != properties.end())
            some.insert(name, *property);
    }
    return some;
}

QVariantMap rootProperties()
{
    return { { QStringLiteral("children-display"), QStringLiteral("submenu") } };
}

}

NotifierMenu::NotifierMenu(Operations operations)
    : m_operations(std::move(operations))
{
}

QVariantMap NotifierMenu::properties() const
{
    bool const isLeftToRight = QGuiApplication::isLeftToRight();
    return { { QStringLiteral("Version"), 3U },
        { QStringLiteral("TextDirection"), isLeftToRight ? QStringLiteral("ltr") : QStringLiteral("rtl") },
        { QStringLiteral("Status"), QStringLiteral("normal") }, { QStringLiteral("IconThemePath"), QStringList() } };
}

std::optional<QVariantList> NotifierMenu::answer(QDBusMessage const& call)
{
    auto const name = call.member();
    auto const arguments = call.arguments();
    if (name == QLatin1StringView("AboutToShow")) {
        announce();
        return QVariantList { true };
    }
    if (name == QLatin1StringView("AboutToShowGroup")) {
        announce();
        return QVariantList { QVariant::fromValue(QList<int> { rootNumber }), QVariant::fromValue(QList<int>()) };
    }
    if (name == QLatin1StringView("GetLayout"))
        return layout(arguments.value(0).toInt(), arguments.value(2).toStringList());
    if (name == QLatin1StringView("GetGroupProperties"))
        return groupProperties(qdbus_cast<QList<int>>(arguments.value(0)), arguments.value(1).toStringList());
    if (name == QLatin1StringView("GetProperty")) {
        auto const* const asked = row(arguments.value(0).toInt());
        auto const value = asked ? propertiesOf(*asked).value(arguments.value(1).toString()) : QVariant();
        return QVariantList { QVariant::fromValue(QDBusVariant(value.isValid() ? value : QString())) };
    }
    if (name == QLatin1StringView("Event")) {
        take(arguments.value(0).toInt(), arguments.value(1).toString());
        return QVariantList();
    }
    if (name == QLatin1StringView("EventGroup")) {
        QList<int> unknown;
        for (auto const& event : qdbus_cast<QList<RowEvent>>(arguments.value(0))) {
            if (!take(event.number, event.name))
                unknown.append(event.number);
        }
        return QVariantList { QVariant::fromValue(unknown) };
    }
    return std::nullopt;
}

void NotifierMenu::rebuild()
{
    if (auto menu = m_operations.menu(); std::exchange(m_menu, menu) != menu)
        ++m_revision;
}

// Told every time: a tray may still have the layout of another click.
void NotifierMenu::announce()
{
    m_menu = m_operations.menu();
    ++m_revision;
    m_operations.layoutUpdated(m_revision);
}

// The first that asks has not announced it.
QVariantList NotifierMenu::layout(int parent, QStringList const& wanted)
{
    rebuild();
    Layout layout { { parent, selected(rootProperties(), wanted) }, {} };
    if (auto const* const asked = row(parent))
        layout.row.properties = selected(propertiesOf(*asked), wanted);
    else if (parent == rootNumber) {
        for (auto const& each : m_menu) {
            Layout const child { { each.number, selected(propertiesOf(each), wanted) }, {} };
            layout.rows.append(QVariant::fromValue(child)); // which makes it a variant on the bus
        }
    }
    return { m_revision, QVariant::fromValue(layout) };
}

// Of all rows where none is named.
QVariantList NotifierMenu::groupProperties(QList<int> const& numbers, QStringList const& wanted) const
{
    QList<Row> rows;
    if (numbers.isEmpty() || numbers.contains(rootNumber))
        rows.append({ rootNumber, selected(rootProperties(), wanted) });
    for (auto const& each : m_menu) {
        if (numbers.isEmpty() || numbers.contains(each.number))
            rows.append({ each.number, selected(propertiesOf(each), wanted) });
    }
    return { QVariant::fromValue(rows) };
}

// False for a row that there is not.
bool NotifierMenu::take(int number, QString const& event)
{
    auto const* const chosen = row(number);
    if (chosen && event == QLatin1StringView("clicked") && chosen->isEnabled && !chosen->isSeparator())
        m_operations.chosen(number);
    return chosen || number == rootNumber;
}

StatusMenuRow const* NotifierMenu::row(int number) const
{
    auto const found = std::ranges::find(m_menu, number, &StatusMenuRow::number);
    return found == m_menu.end() ? nullptr : &*found;
}

}
