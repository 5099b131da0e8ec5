#include "updates/views/NotesText.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

QString inTag(QString const& tag, QString const& content)
{
    return tag.isEmpty() ? content : u"<%1>%2</%1>"_s.arg(tag, content);
}

QString toHtml(ReleaseNotes::Span const& span)
{
    using enum ReleaseNotes::Style;
    auto const tag = span.style == emphasis ? u"em"_s : span.style == code ? u"code"_s : QString();
    return inTag(tag, span.text.toHtmlEscaped());
}

QString listTag(ReleaseNotes::Form form)
{
    using enum ReleaseNotes::Form;
    return form == bullet ? u"ul"_s : form == numbered ? u"ol"_s : QString();
}

QString toHtml(ReleaseNotes::Block const& block)
{
    QString content;
    for (auto const& span : block.spans)
        content += toHtml(span);
    return inTag(block.form == ReleaseNotes::Form::paragraph ? u"p"_s : u"li"_s, content);
}

QString closedIssues(QList<Release::Issue> const& issues)
{
    QStringList names;
    for (auto const& issue : issues) {
        if (!issue.name.isEmpty())
            names << issue.name.toHtmlEscaped();
    }
    return names.isEmpty()
        ? QString()
        : inTag(u"p"_s, QCoreApplication::translate("Updates", "Closed: %1").arg(names.join(u", "_s)));
}

}

QString notesText(Release const& release)
{
    QString text;
    auto const& blocks = release.notes.blocks;
    auto const isOtherForm = [](auto const& left, auto const& right) { return left.form != right.form; };
    for (auto first = blocks.begin(); first != blocks.end();) {
        auto const boundary = std::adjacent_find(first, blocks.end(), isOtherForm);
        auto const last = boundary == blocks.end() ? boundary : boundary + 1;
        QString items;
        std::for_each(first, last, [&](auto const& block) { items += toHtml(block); });
        text += inTag(listTag(first->form), items);
        first = last;
    }
    return text + closedIssues(release.issues);
}

}
