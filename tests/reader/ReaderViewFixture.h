#pragma once

#include "reader/NativeReader.h"
#include "reader/ReaderView.h"
#include "reader/SheetList.h"
#include "rendering/MarkdownRenderer.h"
#include "support/FakeLibraryServices.h"
#include "support/Test.h"
#include "text/OneLine.h"

#include <QLabel>
#include <QTest>

namespace Quillory {

// Lines of every length, so that heights that were never measured are wrong.
inline QByteArray longSheet(QByteArray const& title, int paragraphs = 150)
{
    auto source = "# " + title + "\n\n";
    for (int number = 0; number < paragraphs; ++number)
        source += (title + ' ' + QByteArray::number(number) + " é ").repeated(1 + number * 13 % 30) + "\n\n";
    return source + "```\ncode\n```\n";
}

// The reader over a folder, with a list, bars and text.
class ReaderViewTest : public Test {
protected:
    ReaderViewTest()
    {
        services.root.makeFolder("sheets");
        view.resize(800, 500);
        view.show();
    }

    // Until loads are shown. What the text view does when it is idle goes on with the next call.
    void settle()
    {
        services.executor.turn();
        while (services.executor.queuedWork() > 0) {
            while (services.executor.runAndFinishWork()) { }
            services.executor.turn();
        }
    }
    void write(QByteArray const& name, QByteArray const& contents) { services.root.write("sheets/" + name, contents); }
    void save(QByteArray const& name, QByteArray const& contents)
    {
        write(name, contents);
        store.reload();
        settle();
    }
    void connect()
    {
        store.connect(services.root.path("sheets"));
        settle();
    }
    Sheet const& sheet() const { return *store.selectedSheet(); }
    void select(QString const& id)
    {
        store.select(id);
        settle();
    }
    void press(Qt::Key key)
    {
        QTest::keyClick(&text, key);
        settle();
    }
    void clickRow(int row)
    {
        auto const index = list.model()->index(row, 0);
        list.scrollTo(index);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
        settle();
    }
    QLabel& label(char const* name) const { return *view.findChild<QLabel*>(QLatin1StringView(name)); }
    QString const& string() const { return text.rendered().text.string(); }
    QString selected() const { return string().mid(text.selection().start(), text.selection().length()); }

    void expectTheSelectedSheet() const
    {
        auto const title = oneLine(sheet().title);
        EXPECT_EQ(label("title").text(), title);
        EXPECT_EQ(view.windowTitle(), title);
        EXPECT_EQ(list.currentIndex().data().toString(), title);
        auto const rendered = sheet().shortcuts
            ? ReaderDocument(ReaderDocument::Shortcuts { *sheet().shortcuts, sheet().images, store.textSize },
                  text.textWidth(), text.fonts(), text.colors())
                  .rendered()
            : MarkdownRenderer::render(*sheet().parsed, sheet().title, sheet().images, store.textSize);
        EXPECT_EQ(text.rendered(), rendered) << sheet().id.toStdString();
    }

    FakeLibraryServices services;
    NotificationCenter notifications;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
    int dismissals = 0;
    ReaderView view { store, { services.executor, services.clipboard, notifications, services.announcements },
        [this] { ++dismissals; } };
    ReaderTextView& text { *view.textView() };
    SheetList& list { *view.findChild<SheetList*>() };
};

}
