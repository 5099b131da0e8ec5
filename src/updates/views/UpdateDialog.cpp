#include "updates/views/UpdateDialog.h"

#include "updates/views/NotesText.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

constexpr int leastWidth = 460;       // points
constexpr int notesHeight = 200; // points, at least
constexpr int progressSteps = 1000;
constexpr double titleScale = 1.25;

// What comes from the network is text, whatever it looks like.
QLabel* textLabel(QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QString detailsOf(UpdateWindow::Offer const& offer)
{
    QStringList sentences { UpdateDialog::tr("You have version %1.").arg(offer.installed) };
    QLocale const locale;
    if (offer.release.date.isValid())
        sentences << UpdateDialog::tr("The update was released on %1.")
                         .arg(locale.toString(offer.release.date.toLocalTime().date(), QLocale::ShortFormat));
    sentences << UpdateDialog::tr("The download has %1.").arg(locale.formattedDataSize(offer.size, 1));
    if (offer.release.urgency >= Release::Urgency::high)
        sentences << UpdateDialog::tr("This update is important.");
    return sentences.join(u' ');
}

}

UpdateDialog::UpdateDialog(Workspace& workspace, Announcements& announcements)
    : m_workspace(workspace)
    , m_announcements(announcements)
{
}

UpdateDialog::~UpdateDialog() = default;

void UpdateDialog::build()
{
    if (layout())
        return;
    m_title = textLabel(this);
    m_text = textLabel(this);
    m_notes = new QTextBrowser(this);
    m_progress = new QProgressBar(this);
    m_buttons = new QDialogButtonBox(this);
    setWindowTitle(tr("Update of Quillory"));
    auto font = m_title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * titleScale);
    m_title->setFont(font);
    m_notes->setOpenLinks(false);
    m_notes->setAccessibleName(tr("Release notes"));
    m_notes->setMinimumHeight(notesHeight);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Download"));
    auto* const column = new QVBoxLayout(this);
    for (QWidget* const part : std::initializer_list<QWidget*> { m_title, m_text, m_progress, m_notes, m_buttons })
        column->addWidget(part);
    column->setStretchFactor(m_notes, 1);
    setMinimumWidth(leastWidth);
}

void UpdateDialog::showOffer(Offer const& offer, std::function<void(Choice)> chosen)
{
    build();
    m_notes->setHtml(notesText(offer.release));
    removeButtons();
    addButton(tr("Install"), QDialogButtonBox::AcceptRole, [chosen] { chosen(Choice::install); });
    addButton(tr("Later"), QDialogButtonBox::RejectRole, [chosen] { chosen(Choice::later); });
    addButton(tr("Skip This Version"), QDialogButtonBox::ActionRole, [chosen] { chosen(Choice::skip); });
    m_rejected = [chosen = std::move(chosen)] { chosen(Choice::later); };
    present(Content::offer, tr("Quillory %1 is available").arg(offer.version), detailsOf(offer));
    bringToFront();
}

void UpdateDialog::showProgress(std::int64_t size, std::function<void()> stop)
{
    build();
    m_size = size;
    m_progress->setRange(0, progressSteps);
    removeButtons();
    addButton(tr("Stop"), QDialogButtonBox::RejectRole, stop);
    m_rejected = std::move(stop);
    present(Content::progress, tr("Fetching the update…"), {});
    setProgress(0);
}

void UpdateDialog::setProgress(std::int64_t received)
{
    auto const step = static_cast<int>(received * progressSteps / std::max<std::int64_t>(m_size, 1));
    if (step == m_progress->value() && !m_text->text().isEmpty())
        return;
    QLocale const locale;
    m_progress->setValue(step);
    m_text->setText(tr("%1 of %2").arg(locale.formattedDataSize(received, 1), locale.formattedDataSize(m_size, 1)));
}

void UpdateDialog::showInstalling()
{
    build();
    m_progress->setRange(0, 0);
    removeButtons();
    addButton(tr("Hide"), QDialogButtonBox::RejectRole, {});
    m_rejected = nullptr;
    present(Content::installing, tr("The update is with the system's installer"),
        tr("It may ask you to confirm, and for your password."));
}

void UpdateDialog::showMessage(QString const& sentence, Tone tone)
{
    build();
    removeButtons();
    addButton(tr("Close"), QDialogButtonBox::RejectRole, {});
    m_rejected = nullptr;
    present(Content::message, tone == Tone::failure ? tr("No update this time") : tr("Updates"), sentence);
    m_announcements.announce(sentence, Announcements::Priority::medium);
    bringToFront();
}

void UpdateDialog::bringToFront()
{
    auto const window = winId();
    m_workspace.prepareToShow(window);
    QDialog::show();
    m_workspace.activateIgnoringOtherApps(window);
}

void UpdateDialog::close()
{
    m_rejected = nullptr;
    hide();
}

// Escape, and the window's own close button.
void UpdateDialog::reject()
{
    answer(m_rejected);
}

void UpdateDialog::present(Content content, QString const& title, QString const& text)
{
    m_title->setText(title);
    m_text->setText(text);
    m_notes->setVisible(content == Content::offer && !m_notes->document()->isEmpty());
    m_progress->setVisible(content == Content::progress || content == Content::installing);
    layout()->activate();
    adjustSize();
    if (auto* const first = qobject_cast<QPushButton*>(m_buttons->buttons().value(0))) {
        // A second press of Return must not stop what the first began.
        bool const isStop = content == Content::progress;
        first->setAutoDefault(!isStop);
        first->setDefault(!isStop);
        first->setFocus();
        first->setAccessibleDescription(text);
    }
}

void UpdateDialog::addButton(QString const& label, int role, std::function<void()> pressed)
{
    auto* const button = m_buttons->addButton(label, static_cast<QDialogButtonBox::ButtonRole>(role));
    connect(button, &QPushButton::clicked, this, [this, pressed = std::move(pressed)] { answer(pressed); });
}

// The one that was pressed is among them, in the middle of telling so.
void UpdateDialog::removeButtons()
{
    for (auto* const button : m_buttons->buttons()) {
        m_buttons->removeButton(button);
        button->hide();
        button->deleteLater();
    }
}

// One answer to what is shown; what follows may show something else, or hide the window itself.
void UpdateDialog::answer(std::function<void()> const& pressed)
{
    auto const action = pressed;
    m_rejected = nullptr;
    if (action)
        action();
    else
        hide();
}

}
