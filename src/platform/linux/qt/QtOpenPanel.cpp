#include "platform/linux/qt/QtOpenPanel.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QStandardPaths>
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
    dialog.setNameFilters({ QFileDialog::tr("Applications") + QStringLiteral(" (*.desktop)") });
    QList<QUrl> places;
    for (auto const& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        if (QDir(folder).exists())
            places.append(QUrl::fromLocalFile(folder));
    }
    dialog.setSidebarUrls(places);
}

void apply(OpenPanelSettings const& settings, QFileDialog& dialog)
{
    if (settings.canChooseDirectories && !settings.canChooseFiles)
        dialog.setFileMode(QFileDialog::Directory);
    else
        dialog.setFileMode(settings.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::ShowDirsOnly, settings.canChooseDirectories && !settings.canChooseFiles);
    // The choice of a name is harmless: what can't be created can't be changed either.
    dialog.setOption(QFileDialog::ReadOnly, !settings.canCreateDirectories);
    if (settings.directoryURL)
        dialog.setDirectory(*settings.directoryURL);
    if (settings.allowedContentType == OpenPanelSettings::ContentType::application)
        restrictToApplications(dialog);
    dialog.setWindowTitle(settings.prompt);
    dialog.setLabelText(QFileDialog::Accept, settings.prompt);
    addMessage(dialog, settings.message);
}

}

void QtOpenPanel::Later::operator()(QFileDialog* dialog) const
{
    dialog->hide();
    dialog->deleteLater();
}

QtOpenPanel::QtOpenPanel() = default;

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
    apply(settings, *m_dialog);
    m_ended = std::move(ended);
    QObject::connect(m_dialog.get(), &QDialog::finished, m_dialog.get(), [this](int result) { finish(result); });
    m_dialog->open();
}

void QtOpenPanel::finish(int result)
{
    auto const chosen = m_dialog->selectedFiles();
    if (result == QDialog::Accepted && !chosen.isEmpty())
        m_url = chosen.first();
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
