#include "linux/qt/QtOpenPanel.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStandardPaths>
#include <QToolButton>
#include <QUrl>

#include <utility>

namespace Quillory {

namespace {

// The dialog has no place of its own for a sentence: it goes above all that the dialog has.
void addMessage(QFileDialog& dialog, QString const& message)
{
    auto* const grid = qobject_cast<QGridLayout*>(dialog.layout());
    if (!grid || message.isEmpty())
        return;
    QList<std::pair<QLayoutItem*, QRect>> items;
    while (grid->count() > 0) {
        int row = 0;
        int column = 0;
        int rows = 0;
        int columns = 0;
        grid->getItemPosition(0, &row, &column, &rows, &columns);
        items.append({ grid->takeAt(0), QRect(column, row + 1, columns, rows) });
    }
    for (auto const& [item, place] : items)
        grid->addItem(item, place.y(), place.x(), place.height(), place.width());
    auto* const label = new QLabel(message, &dialog);
    label->setObjectName(QStringLiteral("message"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    grid->addWidget(label, 0, 0, 1, grid->columnCount());
}

void restrictToApplications(QFileDialog& dialog)
{
    dialog.setNameFilters({ QtOpenPanel::tr("Applications (*.desktop)") });
    QList<QUrl> places;
    for (auto const& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        if (QDir(folder).exists())
            places.append(QUrl::fromLocalFile(folder));
    }
    dialog.setSidebarUrls(places);
}

void refuse(QFileDialog& dialog, QString const& sentence)
{
    auto* const box = new QMessageBox(QMessageBox::Warning, dialog.windowTitle(), sentence, QMessageBox::Ok, &dialog);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void makeFolder(QFileDialog& dialog, QString const& name)
{
    auto const folder = dialog.directory();
    auto const path = folder.filePath(name);
    bool const isName = !name.isEmpty() && !name.contains(u'/');
    if (isName && folder.mkdir(name))
        dialog.selectFile(path);
    else
        refuse(dialog, QtOpenPanel::tr("The folder \"%1\" can't be made here.").arg(name));
}

void askForNewFolder(QFileDialog& dialog)
{
    auto* const question = new QInputDialog(&dialog);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(QtOpenPanel::tr("New Folder"));
    question->setLabelText(QtOpenPanel::tr("Name of the new folder:"));
    QObject::connect(question, &QInputDialog::textValueSelected, &dialog,
        [&dialog](QString const& name) { makeFolder(dialog, name); });
    question->open();
}

// A read-only dialog makes no folders: a button of ours stands in the place of its own.
void offerNewFolders(QFileDialog& dialog)
{
    auto* const original = dialog.findChild<QToolButton*>(QStringLiteral("newFolderButton"));
    if (!original)
        return;
    auto* const button = new QToolButton(original->parentWidget());
    button->setObjectName(QStringLiteral("makeFolder"));
    button->setIcon(original->icon());
    button->setToolTip(original->toolTip());
    button->setAccessibleName(original->accessibleName());
    button->setAutoRaise(original->autoRaise());
    QObject::connect(button, &QToolButton::clicked, &dialog, [&dialog] { askForNewFolder(dialog); });
    delete dialog.layout()->replaceWidget(original, button);
    original->hide(); // and with it its entry in the menu
    QWidget::setTabOrder(original, button);
}

// A read-only dialog would show these greyed.
void hideChangesOfFiles(QFileDialog const& dialog)
{
    for (auto const* name : { "qt_rename_action", "qt_delete_action" }) {
        if (auto* const action = dialog.findChild<QAction*>(QLatin1StringView(name)))
            action->setVisible(false);
    }
}

// Size and kind mean nothing for a folder, nor does a filter.
void showFoldersAlone(QFileDialog& dialog)
{
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setViewMode(QFileDialog::List);
    for (auto const* name : { "fileTypeLabel", "fileTypeCombo", "listModeButton", "detailModeButton" }) {
        if (auto* const part = dialog.findChild<QWidget*>(QLatin1StringView(name)))
            part->hide();
    }
}

void apply(OpenPanelSettings const& settings, QFileDialog& dialog)
{
    if (settings.canChooseDirectories && !settings.canChooseFiles)
        showFoldersAlone(dialog);
    else
        dialog.setFileMode(settings.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    // The toolkit's own dialog deletes, renames and moves folders.
    dialog.setOption(QFileDialog::ReadOnly);
    hideChangesOfFiles(dialog);
    if (settings.allowedContentType == OpenPanelSettings::ContentType::application)
        restrictToApplications(dialog);
    dialog.setWindowTitle(settings.prompt);
    dialog.setLabelText(QFileDialog::Accept, settings.prompt);
    addMessage(dialog, settings.message);
    if (settings.canCreateDirectories)
        offerNewFolders(dialog);
}

}

void QtOpenPanel::Later::operator()(QFileDialog* dialog) const
{
    dialog->hide();
    dialog->deleteLater();
}

QtOpenPanel::QtOpenPanel(std::shared_ptr<QString> lastFolder)
    : m_lastFolder(std::move(lastFolder))
{
}

QtOpenPanel::~QtOpenPanel()
{
    if (m_dialog)
        m_dialog->disconnect();
}

void QtOpenPanel::beginSheetModal(
    std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended)
{
    auto* const owner = QWidget::find(static_cast<WId>(window));
    m_dialog.reset(new QFileDialog(owner ? owner->window() : nullptr));
    m_dialog->setOption(QFileDialog::DontUseNativeDialog);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->setDirectory(settings.directoryURL.value_or(*m_lastFolder));
    apply(settings, *m_dialog);
    m_ended = std::move(ended);
    QObject::connect(m_dialog.get(), &QDialog::finished, m_dialog.get(), [this](int result) { finish(result); });
    m_dialog->open();
}

void QtOpenPanel::finish(int result)
{
    auto const chosen = m_dialog->selectedFiles();
    if (result == QDialog::Accepted && !chosen.isEmpty()) {
        m_url = chosen.first();
        *m_lastFolder = QFileInfo(chosen.first()).absolutePath();
    }
    if (auto const ended = std::exchange(m_ended, nullptr))
        ended(result == QDialog::Accepted ? Response::ok : Response::cancel);
}

void QtOpenPanel::orderOut()
{
    if (m_dialog)
        m_dialog->hide();
}

void QtOpenPanel::cancel()
{
    if (m_dialog && m_ended)
        m_dialog->reject();
}

}
