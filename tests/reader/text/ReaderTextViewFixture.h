#pragma once

#include "reader/text/ReaderScrollView.h"
#include "support/FakeClipboard.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

namespace Quillory {

inline RenderedMarkdown paragraphs(int count)
{
    AttributedText::Builder builder;
    for (int paragraph = 0; paragraph < count; ++paragraph)
        builder.append(QStringLiteral("%1 é ").arg(paragraph).repeated(1 + paragraph * 13 % 70) + u'\n', {}, {});
    return { std::move(builder).build(), {} };
}

// "$code$" is a target within its line, a line that begins with ">" a code block.
inline RenderedMarkdown sheet(QString const& source)
{
    ParagraphStyle block;
    block.paragraphSpacingBefore = 8;
    block.paragraphSpacing = 20;
    block.wrapping = ParagraphStyle::Wrapping::atContainer;
    AttributedText::Builder builder;
    QList<CopyTargets::Place> targets;
    for (auto const& line : source.split(u'\n')) {
        auto const isBlock = line.startsWith(u'>');
        auto const parts = isBlock ? QStringList { QString(), line.mid(1) } : line.split(u'$');
        for (qsizetype part = 0; part < parts.size(); ++part) {
            auto const location = builder.length();
            auto const length = parts[part].size();
            if (part % 2 == 1)
                targets.append(isBlock ? CopyTargets::Place::block(location, length, location, length)
                                       : CopyTargets::Place::inLine(location, length));
            builder.append(parts[part], {}, isBlock ? block : ParagraphStyle());
        }
        builder.append(u"\n", {}, isBlock ? block : ParagraphStyle());
    }
    auto text = std::move(builder).build();
    return { text, CopyTargets(text.string(), std::move(targets)) };
}

class ReaderTextViewTest : public Test {
protected:
    ReaderTextViewTest()
    {
        scroll.resize(500, 400);
        scroll.show();
        view.onCopy = [this](QString const& text) {
            if (isClipboardFull)
                return false;
            copied.append(text);
            return true;
        };
    }

    void settle()
    {
        executor.runPosted();
        ASSERT_TRUE(view.isSettled());
    }
    double bottom() const { return scroll.verticalScrollBar()->maximum(); }
    QImage picture() { return view.grab().toImage(); }
    QString selected() const
    {
        return view.rendered().text.string().mid(view.selection().start(), view.selection().length());
    }
    void show(RenderedMarkdown rendered, double minimumCodeWidth = ReaderDocument::smallestCodeWidth)
    {
        view.show(std::make_unique<ReaderDocument>(
            std::move(rendered), minimumCodeWidth, view.textWidth(), view.fonts(), view.colors()));
    }

    qsizetype positionOf(QString const& text) const { return view.rendered().text.string().indexOf(text); }
    // The middle of the character's left half, which is where a caret before it stands nearest.
    QPointF pointAt(qsizetype position) const
    {
        auto const box = view.boundingRect({ position, 1 }).translated(-view.scrollOrigin());
        return { box.left() + box.width() / 4, box.center().y() };
    }
    QPointF pointAt(QString const& text) const { return pointAt(positionOf(text)); }

    void mouse(QEvent::Type type, QPointF point, Qt::KeyboardModifiers modifiers = {})
    {
        auto const buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, point, view.mapToGlobal(point),
            type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, modifiers);
        event.setTimestamp(now += 10);
        QCoreApplication::sendEvent(&view, &event);
    }
    void hover(QPointF point)
    {
        QMouseEvent event(QEvent::MouseMove, point, view.mapToGlobal(point), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&view, &event);
    }
    void click(QPointF point, Qt::KeyboardModifiers modifiers = {}, QPointF moved = {}, int count = 1)
    {
        now += 10'000;
        for (int number = 0; number < count; ++number) {
            mouse(number == 1 ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, point, modifiers);
            if (!moved.isNull())
                mouse(QEvent::MouseMove, point + moved, modifiers);
            mouse(QEvent::MouseButtonRelease, point + moved, modifiers);
        }
    }
    std::vector<qsizetype> copiedButtons() const
    {
        std::vector<qsizetype> tags;
        for (auto const* const button : view.codeButtons()) {
            if (button->copied())
                tags.push_back(button->tag());
        }
        return tags;
    }

    ManualExecutor executor;
    FakeClipboard clipboard;
    ReaderScrollView scroll { executor, clipboard };
    ReaderTextView& view { scroll.textView() };
    QStringList copied;
    bool isClipboardFull = false;
    quint64 now = 1'000'000;
};

}
