#include "library/ShortcutSheetReader.h"

#include "library/ShortcutSheetFields.h"
#include "text/Scalars.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

using FormatError = ShortcutSheet::FormatError;
using Json = nlohmann::json;
using namespace ShortcutSheetFields;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// A number as written, which may be as long as the file.
QString excerpt(std::string_view number)
{
    constexpr std::size_t longest = 40;
    return number.size() <= longest ? text(number) : text(number.substr(0, longest)) + u'\u2026';
}

struct Failure {
    QString path;
    QString text;

    Failure below(QString const& key) && { return { path.isEmpty() ? key : key + u'.' + path, std::move(text) }; }
};

// The names of modifiers and keys are few and come thousands of times: equal ones share one text.
class NamePool {
public:
    QString get(std::string_view name)
    {
        auto& slot = m_slots[std::hash<std::string_view>()(name) % m_slots.size()];
        if (slot.utf8 != name || slot.name.isNull())
            slot = { std::string(name), text(name) };
        return slot.name;
    }

private:
    struct Slot {
        std::string utf8;
        QString name;
    };
    std::array<Slot, 64> m_slots;
};

// Builds the sheet from the parser's events. A failure is kept at its place until its object ends, since another value
// of the same key may still replace it, and since the order of the fields, not of the file, decides which one is told.
class SheetBuilder {
    Q_DECLARE_TR_FUNCTIONS(ShortcutSheet)
public:
    explicit SheetBuilder(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    std::expected<ShortcutSheet, FormatError> result() &&;

    bool null();
    bool boolean(bool value);
    bool number_integer(Json::number_integer_t value);
    bool number_unsigned(Json::number_unsigned_t value);
    bool number_float(Json::number_float_t value, std::string const& written);
    bool string(std::string& value);
    bool binary(Json::binary_t&) { return true; }
    bool start_object(std::size_t) { return startContainer(Kind::Object); }
    bool key(std::string& name);
    bool end_object();
    bool start_array(std::size_t) { return startContainer(Kind::List); }
    bool end_array();
    bool parse_error(std::size_t bytesRead, std::string const& token, nlohmann::detail::exception const& exception);

private:
    struct State {
        quint8 given = 0; // a bit for each field
        quint8 failed = 0;
        std::optional<std::size_t> field; // the one whose value comes next; absent for an unknown key
        qsizetype elements = 0;
        std::optional<Failure> elementFailure; // the first one of a list
        std::array<Failure, maximumFields> failures;
    };

    static QString nameOf(Kind kind);
    static QString notJson() { return tr("not valid JSON"); }
    static QString unexpectedNull() { return u": "_s + tr("unexpected character U+0000"); }

    State& state() { return m_states[static_cast<std::size_t>(m_level)]; }
    Field const* beginValue();
    void fail(Failure failure);
    void mismatch(Field const& field, QString const& found);
    void outOfRange(QString const& number);
    bool startContainer(Kind kind);
    void descend();
    void ascend(std::optional<Failure> failure);
    std::optional<Failure> firstFailure();
    void store(std::optional<QString> value);
    void startRecord();
    void finishRecord();
    void syntaxError(qsizetype offset, QString const& text, QString const& what = {});

    QByteArrayView m_bytes;
    Level m_level = Level::Document;
    qsizetype m_skippedDepth = 0;
    std::array<State, levelCount> m_states;
    std::optional<FormatError> m_syntaxError;
    NamePool m_names;

    ShortcutSheet m_sheet;
    ShortcutSheet::Section m_section;
    ShortcutSheet::Entry m_entry;
    ShortcutSheet::Shortcut m_shortcut;
    ShortcutSheet::Step m_step;
};

QString SheetBuilder::nameOf(Kind kind)
{
    switch (kind) {
    case Kind::Integer:
        return tr("an integer");
    case Kind::Text:
        return tr("a string");
    case Kind::Object:
        return tr("an object");
    case Kind::List:
        return tr("an array");
    }
    Q_UNREACHABLE();
}

// The field whose value begins here; null for a value that is not part of the format.
Field const* SheetBuilder::beginValue()
{
    if (m_skippedDepth > 0)
        return nullptr;
    if (m_level == Level::Document)
        return &objectElement;
    if (isObject(m_level))
        return state().field ? &fieldsOf(m_level)[*state().field] : nullptr;
    if (state().elementFailure)
        return nullptr;
    ++state().elements;
    return m_level == Level::Modifiers ? &textElement : &objectElement;
}

void SheetBuilder::fail(Failure failure)
{
    auto& here = state();
    if (isObject(m_level)) {
        here.failures[*here.field] = std::move(failure).below(text(fieldsOf(m_level)[*here.field].name));
        here.failed |= static_cast<quint8>(1U << *here.field);
    } else if (m_level == Level::Document) {
        here.elementFailure = std::move(failure);
    } else {
        here.elementFailure = std::move(failure).below(QString::number(here.elements - 1));
    }
}

void SheetBuilder::mismatch(Field const& field, QString const& found)
{
    fail({ {}, tr("expected %1 but found %2").arg(nameOf(field.kind), found) });
}

void SheetBuilder::outOfRange(QString const& number)
{
    fail({ {}, tr("the number %1 does not fit an integer").arg(number) });
}

bool SheetBuilder::null()
{
    if (auto const* field = beginValue()) {
        if (field->presence == Presence::Optional)
            store(std::nullopt);
        else
            mismatch(*field, u"null"_s);
    }
    return true;
}

bool SheetBuilder::boolean(bool)
{
    if (auto const* field = beginValue())
        mismatch(*field, tr("a boolean"));
    return true;
}

bool SheetBuilder::number_integer(Json::number_integer_t value)
{
    if (auto const* field = beginValue()) {
        if (field->kind == Kind::Integer)
            m_sheet.schemaVersion = value;
        else
            mismatch(*field, tr("a number"));
    }
    return true;
}

bool SheetBuilder::number_unsigned(Json::number_unsigned_t value)
{
    auto const* field = beginValue();
    if (!field)
        return true;
    if (field->kind != Kind::Integer)
        mismatch(*field, tr("a number"));
    else if (!std::in_range<qint64>(value))
        outOfRange(QString::number(value));
    else
        m_sheet.schemaVersion = static_cast<qint64>(value);
    return true;
}

bool SheetBuilder::number_float(Json::number_float_t value, std::string const& written)
{
    constexpr double beyondIntegers = 0x1p63;
    auto const* field = beginValue();
    if (!field)
        return true;
    if (field->kind != Kind::Integer)
        mismatch(*field, tr("a number"));
    else if (std::trunc(value) != value)
        mismatch(*field, tr("the number %1").arg(excerpt(written)));
    else if (value < -beyondIntegers || value >= beyondIntegers)
        outOfRange(excerpt(written));
    else
        m_sheet.schemaVersion = static_cast<qint64>(value);
    return true;
}

bool SheetBuilder::string(std::string& value)
{
    if (auto const* field = beginValue()) {
        if (field->kind == Kind::Text)
            store(m_level == Level::Step || m_level == Level::Modifiers ? m_names.get(value) : text(value));
        else
            mismatch(*field, nameOf(Kind::Text));
    }
    return true;
}

bool SheetBuilder::startContainer(Kind kind)
{
    auto const* field = beginValue();
    if (field && field->kind == kind) {
        descend();
        return true;
    }
    if (field)
        mismatch(*field, nameOf(kind));
    ++m_skippedDepth;
    return true;
}

bool SheetBuilder::key(std::string& name)
{
    if (m_skippedDepth > 0)
        return true;
    auto const fields = fieldsOf(m_level);
    auto const known = std::ranges::find(fields, std::string_view(name), &Field::name);
    auto& here = state();
    here.field.reset();
    if (known == fields.end())
        return true;
    here.field = static_cast<std::size_t>(std::distance(fields.begin(), known));
    auto const bit = static_cast<quint8>(1U << *here.field);
    here.given |= bit;
    here.failed &= static_cast<quint8>(~bit);
    return true;
}

void SheetBuilder::descend()
{
    m_level = static_cast<Level>(static_cast<quint8>(m_level) + 1);
    auto& here = state();
    here.given = 0;
    here.failed = 0;
    here.field.reset();
    here.elements = 0;
    here.elementFailure.reset();
    startRecord();
}

void SheetBuilder::ascend(std::optional<Failure> failure)
{
    if (!failure)
        finishRecord();
    m_level = static_cast<Level>(static_cast<quint8>(m_level) - 1);
    if (failure)
        fail(std::move(*failure));
}

std::optional<Failure> SheetBuilder::firstFailure()
{
    auto const fields = fieldsOf(m_level);
    auto& here = state();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (here.failed & (1U << i))
            return std::move(here.failures[i]);
        if (fields[i].presence == Presence::Required && !(here.given & (1U << i))) {
            QString const name = text(fields[i].name);
            return Failure { m_level == Level::Sheet ? u'.' + name : name, tr("the required key is missing") };
        }
    }
    return std::nullopt;
}

bool SheetBuilder::end_object()
{
    if (m_skippedDepth > 0)
        --m_skippedDepth;
    else
        ascend(firstFailure());
    return true;
}

bool SheetBuilder::end_array()
{
    if (m_skippedDepth > 0)
        --m_skippedDepth;
    else
        ascend(std::move(state().elementFailure));
    return true;
}

// The text, or its absence, for the field or list that stands open.
void SheetBuilder::store(std::optional<QString> value)
{
    auto const field = state().field.value_or(0);
    switch (m_level) {
    case Level::Sheet:
        if (field == 1)
            m_sheet.title = std::move(*value);
        else
            (field == 2 ? m_sheet.description : m_sheet.icon) = std::move(value);
        break;
    case Level::Section:
        if (field < 2)
            (field == 0 ? m_section.id : m_section.title) = std::move(*value);
        else
            (field == 2 ? m_section.description : m_section.icon) = std::move(value);
        break;
    case Level::Entry:
        if (field < 2)
            (field == 0 ? m_entry.id : m_entry.title) = std::move(*value);
        else
            m_entry.text = std::move(value);
        break;
    case Level::Step:
        m_step.key = std::move(*value);
        break;
    case Level::Modifiers:
        m_step.modifiers.append(std::move(*value));
        break;
    default:
        Q_UNREACHABLE();
    }
}

// Empties what the level that begins will fill: an object, or a list, which may come a second time.
void SheetBuilder::startRecord()
{
    switch (m_level) {
    case Level::Document:
        break;
    case Level::Sheet:
        m_sheet = {};
        break;
    case Level::Sections:
        m_sheet.sections.clear();
        break;
    case Level::Section:
        m_section = {};
        break;
    case Level::Entries:
        m_section.entries.clear();
        break;
    case Level::Entry:
        m_entry = {};
        break;
    case Level::Shortcuts:
        m_entry.shortcuts.clear();
        break;
    case Level::Shortcut:
        m_shortcut = {};
        break;
    case Level::Steps:
        m_shortcut.steps.clear();
        break;
    case Level::Step:
        m_step = {};
        break;
    case Level::Modifiers:
        m_step.modifiers.clear();
        break;
    }
}

void SheetBuilder::finishRecord()
{
    switch (m_level) {
    case Level::Section:
        m_sheet.sections.append(std::move(m_section));
        break;
    case Level::Entry:
        m_section.entries.append(std::move(m_entry));
        break;
    case Level::Shortcut:
        m_entry.shortcuts.append(std::move(m_shortcut));
        break;
    case Level::Step:
        m_shortcut.steps.append(std::move(m_step));
        break;
    default:
        break;
    }
}

void SheetBuilder::syntaxError(qsizetype offset, QString const& text, QString const& what)
{
    offset = std::min(offset, m_bytes.size());
    auto const before = m_bytes.first(offset);
    auto const lineStart = before.lastIndexOf('\n') + 1;
    auto line = before.sliced(lineStart);
    if (lineStart == 0 && line.startsWith("\xEF\xBB\xBF"))
        line = line.sliced(3);
    auto const row = std::ranges::count(before, '\n') + 1;
    auto const column = scalarCount(QString::fromUtf8(line)) + 1;
    m_syntaxError = FormatError { u"document: "_s
        + tr("%1 at line %2, column %3").arg(text, QString::number(row), QString::number(column)) + what };
}

bool SheetBuilder::parse_error(std::size_t bytesRead, std::string const&, nlohmann::detail::exception const& exception)
{
    // The byte that was read last is the one that can't stand there.
    auto const offset = static_cast<qsizetype>(bytesRead) - 1;
    if (dynamic_cast<Json::out_of_range const*>(&exception)) {
        syntaxError(offset, tr("number out of range"));
        return false;
    }
    if (offset < m_bytes.size() && m_bytes[offset] == '\0') {
        syntaxError(offset, notJson(), unexpectedNull());
        return false;
    }

    // "[name] parse error at line 1, column 1: syntax error while parsing value - reason; last read: '…'; expected …"
    std::string_view const report = exception.what();
    auto const dash = std::min(report.find(" - "), report.size() - 3);
    auto const reason = report.substr(dash + 3, report.find("; last read: ") - dash - 3);
    syntaxError(offset, notJson(), u": "_s + text(reason));
    return false;
}

std::expected<ShortcutSheet, FormatError> SheetBuilder::result() &&
{
    // The parser takes U+0000 for the end of its input.
    if (auto const end = m_bytes.indexOf('\0'); !m_syntaxError && end >= 0)
        syntaxError(end, notJson(), unexpectedNull());
    if (m_syntaxError)
        return std::unexpected(std::move(*m_syntaxError));
    if (auto& failure = m_states[0].elementFailure) {
        auto const path = failure->path.isEmpty() ? u"document"_s : failure->path;
        return std::unexpected(FormatError { path + ": "_L1 + failure->text });
    }
    return std::move(m_sheet);
}

}

std::expected<ShortcutSheet, FormatError> readShortcutSheet(QByteArrayView bytes)
{
    SheetBuilder builder(bytes);
    Json::sax_parse(bytes.begin(), bytes.end(), &builder);
    return std::move(builder).result();
}

}
