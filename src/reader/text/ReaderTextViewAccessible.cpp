#include "reader/text/ReaderTextViewAccessible.h"

#include "reader/text/CodeButtonAccessible.h"
#include "reader/text/CopyLook.h"
#include "reader/text/ReaderTextView.h"
#include "text/TextBoundaries.h"

#include <QAccessible>
#include <QHash>

namespace Quillory {

namespace {

QAccessibleInterface* make(QString const&, QObject* object)
{
    auto* const view = qobject_cast<ReaderTextView*>(object);
    return view ? new ReaderTextViewAccessible(view) : nullptr;
}

QString escaped(QString value)
{
    for (auto const special : { u'\\', u':', u',', u'=', u';' })
        value.replace(special, QStringLiteral("\\") + special);
    return value;
}

QString described(TextAttributes const& attributes, FontSet const& fonts, ColorSet const& colors)
{
    auto const font = fonts.font(attributes.font);
    auto const rgb = [](QColor const& color) {
        return QStringLiteral("rgb(%1,%2,%3)").arg(color.red()).arg(color.green()).arg(color.blue());
    };
    QString result = QStringLiteral("font-family:\"%1\";font-size:%2px;font-weight:%3;font-style:%4;color:%5;")
                         .arg(escaped(font.families().value(0, font.family())))
                         .arg(attributes.font.size)
                         .arg(static_cast<int>(attributes.font.weight))
                         .arg(attributes.font.italic ? QStringLiteral("italic") : QStringLiteral("normal"),
                             rgb(attributes.link.isEmpty() ? colors.resolved(attributes.color) : colors.link));
    if (attributes.background)
        result += QStringLiteral("background-color:%1;").arg(rgb(colors.resolved(*attributes.background)));
    if (attributes.strikethrough)
        result += QStringLiteral("text-line-through-style:solid;");
    if (!attributes.link.isEmpty())
        result += QStringLiteral("text-underline-style:solid;");
    return result;
}

}

void ReaderTextViewAccessible::install()
{
    static bool const isInstalled = (QAccessible::installFactory(make), true);
    Q_UNUSED(isInstalled);
}

ReaderTextViewAccessible::ReaderTextViewAccessible(ReaderTextView* view)
    : QAccessibleWidget(view, QAccessible::EditableText)
{
    m_connections.push_back(QObject::connect(view, &ReaderTextView::targetsChanged, [this] { forgetButtons(); }));
    m_connections.push_back(QObject::connect(view, &ReaderTextView::copiedChanged, [this] { tellButtonsOfCopy(); }));
    m_connections.push_back(QObject::connect(view, &ReaderTextView::selectionChanged, [this] { tellOfSelection(); }));
}

ReaderTextViewAccessible::~ReaderTextViewAccessible()
{
    for (auto const& connection : m_connections)
        QObject::disconnect(connection);
    forgetButtons();
}

ReaderTextView& ReaderTextViewAccessible::view() const
{
    auto& view = *static_cast<ReaderTextView*>(widget());
    view.completeNow();
    return view;
}

QString const& ReaderTextViewAccessible::string() const
{
    return view().rendered().text.string();
}

void* ReaderTextViewAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State ReaderTextViewAccessible::state() const
{
    auto state = QAccessibleWidget::state();
    state.readOnly = true;
    state.editable = false;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

void ReaderTextViewAccessible::forgetButtons()
{
    for (auto const button : std::exchange(m_buttons, {}))
        QAccessible::deleteAccessibleInterface(button);
    m_actionNames.clear();
}

void ReaderTextViewAccessible::tellOfSelection() const
{
    auto const selection = view().selection();
    QAccessibleTextSelectionEvent event(&view(), offsetOf(selection.start()), offsetOf(selection.end()));
    event.setCursorPosition(offsetOf(selection.head));
    QAccessible::updateAccessibility(&event);
}

void ReaderTextViewAccessible::tellButtonsOfCopy() const
{
    for (auto const button : std::as_const(m_buttons)) {
        if (auto* const interface = QAccessible::accessibleInterface(button)) {
            QAccessibleEvent event(interface, QAccessible::DescriptionChanged);
            QAccessible::updateAccessibility(&event);
        }
    }
}

int ReaderTextViewAccessible::childCount() const
{
    return static_cast<int>(view().blockTargets().size());
}

QAccessibleInterface* ReaderTextViewAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    auto const known = m_buttons.constFind(index);
    if (known != m_buttons.cend())
        return QAccessible::accessibleInterface(*known);
    auto* const button = new CodeButtonAccessible(&view(), view().blockTargets()[static_cast<std::size_t>(index)]);
    m_buttons.insert(index, QAccessible::registerAccessibleInterface(button));
    return button;
}

int ReaderTextViewAccessible::indexOfChild(QAccessibleInterface const* child) const
{
    for (auto const& [index, button] : m_buttons.asKeyValueRange()) {
        if (QAccessible::accessibleInterface(button) == child)
            return index;
    }
    return -1;
}

QAccessibleInterface* ReaderTextViewAccessible::childAt(int x, int y) const
{
    auto const& blocks = view().blockTargets();
    for (auto const* const button : view().codeButtons()) {
        if (!QRect(button->mapToGlobal(QPoint()), button->size()).contains(x, y))
            continue;
        auto const found = std::ranges::lower_bound(blocks, button->tag());
        return child(static_cast<int>(std::distance(blocks.begin(), found)));
    }
    return nullptr;
}

QStringList ReaderTextViewAccessible::actionNames() const
{
    if (view().learningModeEnabled())
        return {};
    auto const& targets = view().rendered().copyTargets;
    if (m_actionNames.size() == std::ssize(targets))
        return m_actionNames;
    QHash<QString, QString> copied; // text by name: actions are asked for by name
    m_actionNames.clear();
    m_actionNames.reserve(std::ssize(targets));
    for (auto const& target : targets) {
        auto const name = target.accessibilityLabel ? CopyLook::label(*target.accessibilityLabel)
                                                    : CopyLook::label(target.text, CopyLook::spokenCharacters);
        auto unique = name;
        for (int number = 2; copied.contains(unique) && copied[unique] != target.text; ++number)
            unique = QStringLiteral("%1 (%2)").arg(name).arg(number);
        copied.insert(unique, target.text);
        m_actionNames.append(unique);
    }
    return m_actionNames;
}

void ReaderTextViewAccessible::doAction(QString const& name)
{
    if (name == setFocusAction())
        return view().setFocus(Qt::OtherFocusReason);
    if (auto const index = actionNames().indexOf(name); index >= 0)
        view().copyTarget(index);
}

ScalarOffsets const& ReaderTextViewAccessible::offsets() const
{
    if (!m_counted.isSharedWith(string())) {
        m_counted = string();
        m_offsets = ScalarOffsets(m_counted);
    }
    return m_offsets;
}

qsizetype ReaderTextViewAccessible::unitOf(int offset) const
{
    return std::clamp<qsizetype>(offsets().unitAt(offset), 0, string().size());
}

void ReaderTextViewAccessible::selection(int index, int* start, int* end) const
{
    auto const selection = view().selection();
    *start = index == 0 ? offsetOf(selection.start()) : 0;
    *end = index == 0 ? offsetOf(selection.end()) : 0;
}

int ReaderTextViewAccessible::selectionCount() const
{
    return view().selection().isEmpty() ? 0 : 1;
}

void ReaderTextViewAccessible::addSelection(int start, int end)
{
    view().setSelection({ unitOf(start), unitOf(end) });
}

void ReaderTextViewAccessible::removeSelection(int)
{
    auto const head = view().selection().head;
    view().setSelection({ head, head });
}

void ReaderTextViewAccessible::setSelection(int, int start, int end)
{
    addSelection(start, end);
}

int ReaderTextViewAccessible::cursorPosition() const
{
    return offsetOf(view().selection().head);
}

void ReaderTextViewAccessible::setCursorPosition(int position)
{
    addSelection(position, position);
    view().scrollToVisible({ view().selection().head, 0 });
}

int ReaderTextViewAccessible::characterCount() const
{
    return offsetOf(string().size());
}

QString ReaderTextViewAccessible::text(int start, int end) const
{
    auto const first = unitOf(start);
    auto const last = end < 0 ? string().size() : unitOf(end);
    return start < 0 || first >= last ? QString() : string().sliced(first, last - first);
}

ReaderTextViewAccessible::Span ReaderTextViewAccessible::spanAt(
    qsizetype unit, QAccessible::TextBoundaryType type) const
{
    auto const& text = string();
    auto const withLineEnd = [&](TextRange range) {
        return Span { range.location, std::min(range.end() + 1, text.size()) };
    };
    if (unit == text.size() && type == QAccessible::CharBoundary)
        return { unit, unit };
    switch (type) {
    case QAccessible::CharBoundary: {
        auto const start = TextBoundaries::beforeCharacter(text, unit + 1);
        return { start, TextBoundaries::afterCharacter(text, start) };
    }
    case QAccessible::WordBoundary: {
        auto const word = TextBoundaries::wordAt(text, unit);
        return { word.location, std::max(word.end(), TextBoundaries::nextWord(text, unit)) };
    }
    case QAccessible::LineBoundary: {
        auto const line = view().lineRange(unit);
        auto const end = line.end();
        return { line.location, end < text.size() && text[end] == u'\n' ? end + 1 : end };
    }
    case QAccessible::SentenceBoundary:
    case QAccessible::ParagraphBoundary:
        return withLineEnd(TextBoundaries::writtenLineAt(text, unit));
    case QAccessible::NoBoundary:
        break;
    }
    return { 0, text.size() };
}

QString ReaderTextViewAccessible::textOf(Span span, int* start, int* end) const
{
    *start = offsetOf(span.start);
    *end = offsetOf(span.end);
    return string().sliced(span.start, span.end - span.start);
}

QString ReaderTextViewAccessible::textAtOffset(
    int offset, QAccessible::TextBoundaryType type, int* start, int* end) const
{
    return textOf(isInText(offset) ? spanAt(unitOf(offset), type) : Span {}, start, end);
}

QString ReaderTextViewAccessible::textBeforeOffset(
    int offset, QAccessible::TextBoundaryType type, int* start, int* end) const
{
    auto const at = isInText(offset) ? spanAt(unitOf(offset), type) : Span {};
    return textOf(at.start > 0 ? spanAt(at.start - 1, type) : Span {}, start, end);
}

QString ReaderTextViewAccessible::textAfterOffset(
    int offset, QAccessible::TextBoundaryType type, int* start, int* end) const
{
    auto const last = string().size();
    auto const at = isInText(offset) ? spanAt(unitOf(offset), type) : Span { last, last };
    return textOf(at.end < last ? spanAt(at.end, type) : Span { last, last }, start, end);
}

QRect ReaderTextViewAccessible::characterRect(int offset) const
{
    auto const unit = unitOf(offset);
    auto const box = view().boundingRect({ unit, unitOf(offset + 1) - unit }).translated(-view().scrollOrigin());
    return { view().mapToGlobal(box.topLeft().toPoint()), box.size().toSize() };
}

int ReaderTextViewAccessible::offsetAtPoint(QPoint const& point) const
{
    auto const local = view().mapFromGlobal(QPointF(point));
    if (!QRectF(view().rect()).contains(local))
        return -1;
    return offsetOf(view().characterIndexAt(local + view().scrollOrigin()));
}

void ReaderTextViewAccessible::scrollToSubstring(int start, int end)
{
    view().scrollToVisible({ unitOf(start), std::max<qsizetype>(unitOf(end) - unitOf(start), 0) });
}

QString ReaderTextViewAccessible::attributes(int offset, int* start, int* end) const
{
    *start = *end = offset;
    auto const& rendered = view().rendered().text;
    if (offset < 0 || offset >= characterCount())
        return {};
    auto const run = rendered.runs()[static_cast<std::size_t>(rendered.runAt(unitOf(offset)))];
    *start = offsetOf(run.location);
    *end = offsetOf(run.location + run.length);
    return described(rendered.attributes(run), view().fonts(), view().colors());
}

}
