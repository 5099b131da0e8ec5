#include "linux/qt/QtOpenPanels.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QAbstractItemModel>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QInputDialog>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace Quillory {
namespace {

using Response = OpenPanel::Response;

class QtOpenPanelTest : public Test {
protected:
    QtOpenPanelTest() { reader.show(); }
    std::uint64_t window() const { return reader.winId(); }
    QFileDialog* dialog() const
    {
        auto const dialogs = reader.findChildren<QFileDialog*>();
        auto const shown = std::ranges::find_if(dialogs, &QWidget::isVisible);
        return shown == dialogs.end() ? nullptr : *shown;
    }

    EventLoop loop;
    TemporaryFolder const folder;
    QtOpenPanels panels;
    QWidget reader;
    OpenPanelSettings const folderSettings { .canChooseDirectories = true,
        .canChooseFiles = false,
        .canCreateDirectories = true,
        .directoryURL = folder.path(),
        .prompt = u"Choose folder"_s,
        .message = u"Choose well."_s };
};

TEST_F(QtOpenPanelTest, A_window_on_screen_takes_one_panel_at_a_time)
{
    EXPECT_FALSE(panels.canAttachTo(window() + 1));
    EXPECT_TRUE(panels.canAttachTo(window()));
    {
        auto const panel = panels.openPanel();
        panel->cancel(); // not shown yet
        panel->beginSheetModal(window(), folderSettings, [](Response) { ADD_FAILURE() << "nobody answered"; });
        EXPECT_TRUE(dialog());
        EXPECT_FALSE(panels.canAttachTo(window()));
    }
    EXPECT_FALSE(dialog());
    EXPECT_TRUE(panels.canAttachTo(window()));
}

TEST_F(QtOpenPanelTest, The_answer_comes_once_and_may_destroy_the_panel)
{
    auto const path = folder.path();
    auto const choose = [&](OpenPanel&) {
        dialog()->selectFile(path);
        QMetaObject::invokeMethod(dialog(), "accept");
    };
    using Case = std::tuple<std::function<void(OpenPanel&)>, Response, std::optional<QString>>;
    for (auto const& [end, expected, chosen] : { Case { choose, Response::ok, path },
             Case { [&](OpenPanel&) { dialog()->reject(); }, Response::cancel, std::nullopt },
             Case { [&](OpenPanel& panel) { panel.cancel(); }, Response::cancel, std::nullopt } }) {
        auto panel = panels.openPanel();
        std::vector<std::pair<Response, std::optional<QString>>> answers;
        panel->beginSheetModal(window(), folderSettings, [&](Response response) {
            answers.emplace_back(response, panel->url());
            panel->orderOut();
            panel->cancel();
            panel.reset();
        });
        end(*panel);
        EXPECT_THAT(answers, ElementsAre(std::pair(expected, chosen)));
        EXPECT_TRUE(panels.canAttachTo(window()));
    }
}

TEST_F(QtOpenPanelTest, The_texts_stand_on_the_dialog_which_blocks_its_window_alone)
{
    auto const panel = panels.openPanel();
    panel->beginSheetModal(window(), folderSettings, [](Response) { });
    EXPECT_EQ(dialog()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog()->parentWidget(), &reader);
    EXPECT_EQ(dialog()->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(dialog()->labelText(QFileDialog::Accept), u"Choose folder"_s);
    auto const* const message = dialog()->findChild<QLabel*>(u"message"_s);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->text(), u"Choose well."_s);
    EXPECT_TRUE(loop.runUntil([&] { return message->isVisible() && message->height() > 0; }));
    EXPECT_LT(message->mapTo(dialog(), QPoint()).y(), dialog()->height() / 4);

    QWidget hidden;
    EXPECT_FALSE(panels.canAttachTo(hidden.winId()));
}

TEST_F(QtOpenPanelTest, It_begins_at_home_or_where_the_user_chose_last_with_what_means_something_for_a_folder)
{
    auto settings = folderSettings;
    settings.directoryURL = std::nullopt;
    folder.makeFolder("sheets");
    for (auto const& start : { QDir::homePath(), folder.path() }) {
        auto const panel = panels.openPanel();
        panel->beginSheetModal(window(), settings, [](Response) { });
        EXPECT_EQ(dialog()->directory().path(), start);
        for (auto const* name : { "treeView", "fileTypeCombo", "detailModeButton" })
            EXPECT_FALSE(dialog()->findChild<QWidget*>(QLatin1StringView(name))->isVisible()) << name;
        dialog()->selectFile(folder.path("sheets"));
        QMetaObject::invokeMethod(dialog(), "accept");
    }
}

TEST_F(QtOpenPanelTest, Folders_can_be_made_and_nothing_else_of_the_disk_changed)
{
    auto const panel = panels.openPanel();
    panel->beginSheetModal(window(), folderSettings, [](Response) { });
    // Without it the keys and the menu of the toolkit's dialog delete and rename, and drags move.
    ASSERT_TRUE(dialog()->findChild<QFileSystemModel*>()->isReadOnly());
    for (auto const& [name, isMade] : { std::pair(u"../new"_s, false), std::pair(u"new"_s, true) }) {
        dialog()->findChild<QToolButton*>(u"makeFolder"_s)->click();
        auto* const question = dialog()->findChild<QInputDialog*>();
        ASSERT_TRUE(question && question->isVisible());
        question->setTextValue(name);
        question->accept();
        EXPECT_EQ(dialog()->findChild<QMessageBox*>() == nullptr, isMade);
        qDeleteAll(dialog()->findChildren<QDialog*>());
    }
    EXPECT_EQ(dialog()->selectedFiles(), QStringList { folder.path("new") });
    EXPECT_TRUE(folder.has("new"));
}

TEST_F(QtOpenPanelTest, The_chooser_of_applications_shows_their_entries_alone)
{
    for (auto const* name : { "a.desktop", "b.txt", "c.desktop" })
        folder.write(name, "");
    auto const panel = panels.openPanel();
    panel->beginSheetModal(window(),
        { .allowedContentType = OpenPanelSettings::ContentType::application,
            .directoryURL = folder.path(),
            .prompt = u"Open"_s },
        [](Response) { });
    auto const* const list = dialog()->findChild<QListView*>(u"listView"_s);
    ASSERT_TRUE(list);
    EXPECT_TRUE(loop.runUntil([&] { return list->model()->rowCount(list->rootIndex()) == 2; }));
    EXPECT_FALSE(dialog()->findChild<QToolButton*>(u"makeFolder"_s));
    EXPECT_TRUE(QFileInfo::exists(panels.applicationsFolder()));
}

}
}
