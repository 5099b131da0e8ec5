#include "library/ShortcutSheetValidation.h"

#include "text/Scalars.h"
#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

using Entry = ShortcutSheet::Entry;
using FormatError = ShortcutSheet::FormatError;
using Section = ShortcutSheet::Section;
using Shortcut = ShortcutSheet::Shortcut;
using Step = ShortcutSheet::Step;

constexpr qsizetype maximumTitle = 200;
constexpr qsizetype maximumId = 128;
constexpr qsizetype maximumText = 4000;
constexpr qsizetype maximumSections = 100;
constexpr qsizetype maximumEntriesPerSheet = 2000;
constexpr qsizetype maximumEntriesPerSection = 200;
constexpr qsizetype maximumAlternatives = 4;
constexpr qsizetype maximumSteps = 8;
constexpr uint lastFunctionKey = 24;

constexpr std::array<QStringView, 5> modifierNames { u"function", u"control", u"option", u"shift", u"command" };

constexpr std::array<QStringView, 16> keyNames { u"return", u"enter", u"tab", u"escape", u"space", u"delete",
    u"forwardDelete", u"arrowLeft", u"arrowRight", u"arrowUp", u"arrowDown", u"home", u"end", u"pageUp", u"pageDown",
    u"capsLock" };

bool isFunctionKey(QStringView key)
{
    if (key.size() < 2 || key.size() > 3 || key[0] != u'f' || key[1] == u'0')
        return false;
    uint number = 0;
    for (QChar const digit : key.sliced(1)) {
        if (digit < u'0' || digit > u'9')
            return false;
        number = number * 10 + (digit.unicode() - u'0');
    }
    return number <= lastFunctionKey;
}

bool isOnePrintableScalar(QStringView key)
{
    if (key.isEmpty() || key.size() > 2 || scalarCount(key) != 1)
        return false;
    char32_t const scalar = key.size() == 2 ? QChar::surrogateToUcs4(key[0], key[1]) : key[0].unicode();
    return !isWhiteSpace(scalar) && !isControl(scalar);
}

bool isKey(QStringView key)
{
    return isOnePrintableScalar(key) || std::ranges::find(keyNames, key) != keyNames.end() || isFunctionKey(key);
}

bool isModifier(QStringView name)
{
    return std::ranges::find(modifierNames, name) != modifierNames.end();
}

bool exceeds(QStringView text, qsizetype limit)
{
    // A scalar has one unit or two, so most texts need no counting, and hostile ones none either.
    return text.size() > limit && (text.size() > 2 * limit || scalarCount(text) > limit);
}

bool hasEquivalentNames(QStringList const& names)
{
    QSet<QString> seen;
    return !std::ranges::all_of(names, [&](QString const& name) {
        auto const before = seen.size();
        seen.insert(canonicalForm(name));
        return seen.size() > before;
    });
}

bool hasDuplicates(QStringList const& names)
{
    uint seen = 0;
    for (auto const& name : names) {
        auto const known = std::ranges::find(modifierNames, QStringView(name));
        if (known == modifierNames.end())
            return hasEquivalentNames(names);
        auto const bit = 1U << std::distance(modifierNames.begin(), known);
        if (seen & bit)
            return true;
        seen |= bit;
    }
    return false;
}

// Walks a sheet. Every check gives whether it held; the first that did not leaves its error.
class SheetValidation {
    Q_DECLARE_TR_FUNCTIONS(ShortcutSheet)
public:
    std::optional<FormatError> error;

    bool sheet(ShortcutSheet const& sheet);

private:
    // The position of the walk. Only a failure is written out as a path.
    struct Place {
        qsizetype section = -1;
        qsizetype entry = -1;
        qsizetype shortcut = -1;
        qsizetype step = -1;

        QString path(QLatin1StringView field) const;
    };

    bool section(Section const& section);
    bool entry(Entry const& entry);
    bool shortcut(Shortcut const& shortcut);
    bool step(Step const& step);

    // The text is translated for a failure alone.
    bool require(bool holds, QLatin1StringView field, char const* text);
    bool fail(QLatin1StringView field, QString const& text);
    bool name(QString const& text, qsizetype limit, QLatin1StringView field);
    bool atMost(QString const& text, qsizetype limit, QLatin1StringView field);
    bool atMost(std::optional<QString> const& text, qsizetype limit, QLatin1StringView field);
    bool unseen(QSet<QString>& ids, QString const& id, char const* text);

    template<typename List>
    bool each(List const& list, qsizetype Place::* position,
        bool (SheetValidation::*check)(typename List::value_type const&));

    Place m_place;
    QSet<QString> m_sectionIds;
    QSet<QString> m_entryIds;
};

QString SheetValidation::Place::path(QLatin1StringView field) const
{
    QString path;
    auto const add = [&path](QLatin1StringView list, qsizetype position) {
        if (position >= 0)
            path += list + u'[' + QString::number(position) + "]."_L1;
    };
    add("sections"_L1, section);
    add("entries"_L1, entry);
    add("shortcuts"_L1, shortcut);
    add("steps"_L1, step);
    return path + field;
}

bool SheetValidation::require(bool holds, QLatin1StringView field, char const* text)
{
    return holds || fail(field, tr(text));
}

bool SheetValidation::fail(QLatin1StringView field, QString const& text)
{
    error = FormatError { m_place.path(field) + ": "_L1 + text };
    return false;
}

bool SheetValidation::atMost(QString const& text, qsizetype limit, QLatin1StringView field)
{
    return !exceeds(text, limit) || fail(field, tr("exceeds %1 characters").arg(limit));
}

bool SheetValidation::atMost(std::optional<QString> const& text, qsizetype limit, QLatin1StringView field)
{
    return !text || atMost(*text, limit, field);
}

bool SheetValidation::name(QString const& text, qsizetype limit, QLatin1StringView field)
{
    return require(!isBlank(text), field, QT_TR_NOOP("must not be empty")) && atMost(text, limit, field);
}

bool SheetValidation::unseen(QSet<QString>& ids, QString const& id, char const* text)
{
    auto const before = ids.size();
    ids.insert(canonicalForm(id));
    return require(ids.size() > before, "id"_L1, text);
}

template<typename List>
bool SheetValidation::each(
    List const& list, qsizetype Place::* position, bool (SheetValidation::*check)(typename List::value_type const&))
{
    for (qsizetype i = 0; i < list.size(); ++i) {
        m_place.*position = i;
        if (!(this->*check)(list[i]))
            return false;
    }
    m_place.*position = -1;
    return true;
}

bool SheetValidation::sheet(ShortcutSheet const& sheet)
{
    qsizetype entries = 0;
    for (auto const& section : sheet.sections)
        entries += section.entries.size();

    return require(sheet.schemaVersion == 1, "schemaVersion"_L1, QT_TR_NOOP("unsupported version; expected 1"))
        && name(sheet.title, maximumTitle, "title"_L1) && atMost(sheet.description, maximumText, "description"_L1)
        && require(!sheet.sections.isEmpty() && sheet.sections.size() <= maximumSections, "sections"_L1,
            QT_TR_NOOP("expected 1–100 sections"))
        && require(entries <= maximumEntriesPerSheet, "sections"_L1, QT_TR_NOOP("maximum 2000 entries per sheet"))
        && each(sheet.sections, &Place::section, &SheetValidation::section);
}

bool SheetValidation::section(Section const& section)
{
    return name(section.id, maximumId, "id"_L1) && unseen(m_sectionIds, section.id, QT_TR_NOOP("duplicate section ID"))
        && name(section.title, maximumTitle, "title"_L1) && atMost(section.description, maximumText, "description"_L1)
        && require(section.entries.size() <= maximumEntriesPerSection, "entries"_L1,
            QT_TR_NOOP("maximum 200 entries per section"))
        && each(section.entries, &Place::entry, &SheetValidation::entry);
}

bool SheetValidation::entry(Entry const& entry)
{
    return name(entry.id, maximumId, "id"_L1) && unseen(m_entryIds, entry.id, QT_TR_NOOP("duplicate entry ID"))
        && name(entry.title, maximumTitle, "title"_L1) && atMost(entry.text, maximumText, "text"_L1)
        && require(entry.shortcuts.size() <= maximumAlternatives, "shortcuts"_L1, QT_TR_NOOP("maximum 4 alternatives"))
        && each(entry.shortcuts, &Place::shortcut, &SheetValidation::shortcut);
}

bool SheetValidation::shortcut(Shortcut const& shortcut)
{
    return require(!shortcut.steps.isEmpty() && shortcut.steps.size() <= maximumSteps, "steps"_L1,
               QT_TR_NOOP("expected 1–8 steps"))
        && each(shortcut.steps, &Place::step, &SheetValidation::step);
}

bool SheetValidation::step(Step const& step)
{
    return require(isKey(step.key), "key"_L1,
               QT_TR_NOOP("unknown key; use one printable character or a documented key name"))
        && require(!hasDuplicates(step.modifiers), "modifiers"_L1, QT_TR_NOOP("duplicate modifier"))
        && require(std::ranges::all_of(step.modifiers, isModifier), "modifiers"_L1, QT_TR_NOOP("unknown modifier"));
}

}

std::optional<FormatError> findFormatError(ShortcutSheet const& sheet)
{
    SheetValidation validation;
    validation.sheet(sheet);
    return std::move(validation.error);
}

}
