#include "updates/views/UpdateDialog.h"
#include "support/FakeAnnouncements.h"
#include "support/FakeWorkspace.h"
#include "support/Test.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <algorithm>

namespace Quillory {
namespace {

class UpdateDialogTest : public Test {
protected:
    UpdateWindow& window() { return dialog; }
    UpdateWindow::Offer offer() const
    {
        Release release { .version = *ReleaseVersion::fromText(u"2.0"_s) };
        using enum ReleaseNotes::Style;
        using enum ReleaseNotes::Form;
        release.notes.blocks = { { paragraph, { { u"Pins, "_s, plain }, { u"a<b"_s, code } } },
            { bullet, { { u"<img src=\"http://x\">"_s, plain } } }, { bullet, { { u"two"_s, emphasis } } },
            { numbered, { { u"one"_s, plain } } } };
        release.issues = { { u"#7"_s, false }, { u"CVE-1"_s, true } };
        release.urgency = Release::Urgency::critical;
        return { u"2.0"_s, u"Spring"_s, release, 3'000'000 };
    }
    // What stands on the dialog's labels and buttons, line by line.
    QStringList shown() const
    {
        QStringList lines;
        for (auto const* label : dialog.findChildren<QLabel*>()) {
            if (label->isVisible() && !label->text().isEmpty())
                lines << label->text();
        }
        for (auto const* button : dialog.findChildren<QPushButton*>()) {
            if (button->isVisible())
                lines << u'[' + button->text() + u']';
        }
        return lines;
    }
    void press(QString const& label)
    {
        for (auto* button : dialog.findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text() == label)
                return button->click();
        }
        ADD_FAILURE() << label.toStdString();
    }

    FakeWorkspace workspace;
    FakeAnnouncements announcements;
    UpdateDialog dialog { workspace, announcements };
};

TEST_F(UpdateDialogTest, Each_way_out_of_an_offer_is_one_answer)
{
    using enum UpdateWindow::Choice;
    auto const escape = [this] { QTest::keyClick(&dialog, Qt::Key_Escape); };
    std::vector<std::pair<std::function<void()>, UpdateWindow::Choice>> const rows {
        { [this] { press(u"Install"_s); }, install }, { [this] { press(u"Skip This Version"_s); }, skip },
        { [this] { press(u"Later"_s); }, later }, { escape, later }, { [this] { dialog.QWidget::close(); }, later }
    };
    for (auto const& [act, choice] : rows) {
        std::vector<UpdateWindow::Choice> chosen;
        window().showOffer(offer(), [&](UpdateWindow::Choice made) {
            chosen.push_back(made);
            window().showMessage(u"done"_s, UpdateWindow::Tone::news); // instead of the pressed button
        });
        EXPECT_THAT(workspace.ownActivations, Contains(dialog.winId()));
        act();
        escape();
        EXPECT_THAT(chosen, ElementsAre(choice));
        EXPECT_FALSE(dialog.isVisible());
    }
}

TEST_F(UpdateDialogTest, Shows_each_step_and_takes_the_feed_for_text)
{
    window().showOffer(offer(), [](auto) { });
    EXPECT_EQ(shown()[0], u"Quillory 2.0 is available"_s);
    EXPECT_EQ(shown()[1], u"You have version Spring. The download has 2.9 MiB. This update is important."_s);
    auto const* const notes = dialog.findChild<QTextBrowser*>();
    EXPECT_EQ(notes->toPlainText(), u"Pins, a<b\n<img src=\"http://x\">\ntwo\none\nClosed: #7, CVE-1"_s);

    int stopped = 0;
    window().showProgress(3'000'000, [&] { ++stopped; });
    window().setProgress(1'500'000);
    EXPECT_EQ(shown(), (QStringList { u"Fetching the update…"_s, u"1.4 MiB of 2.9 MiB"_s, u"[Stop]"_s }));
    EXPECT_EQ(dialog.findChild<QProgressBar*>()->value(), 500);
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(stopped, 0) << "a second Return after the one that installs";
    press(u"Stop"_s);
    EXPECT_EQ(stopped, 1);

    window().showInstalling();
    EXPECT_EQ(shown().last(), u"[Hide]"_s);
    press(u"Hide"_s);
    EXPECT_FALSE(dialog.isVisible());

    window().showMessage(u"<b>It failed.</b>"_s, UpdateWindow::Tone::failure);
    EXPECT_EQ(shown(), (QStringList { u"No update this time"_s, u"<b>It failed.</b>"_s, u"[Close]"_s }));
    EXPECT_EQ(announcements.announced.at(0).first, u"<b>It failed.</b>"_s);
    EXPECT_FALSE(notes->isVisible());
}

}
}
