#include "updates/views/UpdateSettingsView.h"

#include "updates/views/CheckForUpdatesView.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int rowSpacing = 8;     // points
constexpr int progressWidth = 48; // points
constexpr double captionScale = 0.85;

void makeCaption(QLabel& label)
{
    auto font = label.font();
    font.setPointSizeF(font.pointSizeF() * captionScale);
    label.setFont(font);
    label.setForegroundRole(QPalette::PlaceholderText);
}

// The locale's long date without the day of the week, and with its month abbreviated.
QString shownDate(QDate date)
{
    static QRegularExpression const weekday(QStringLiteral("[,\\s]*dddd[,\\s]*"));
    QLocale const locale;
    auto format = locale.dateFormat(QLocale::LongFormat);
    return locale.toString(date, format.remove(weekday).replace(QStringLiteral("MMMM"), QStringLiteral("MMM")));
}

// Without seconds, which some locales count among what is short.
QString shownTime(QTime time)
{
    static QRegularExpression const seconds(QStringLiteral("[:.]?ss?"));
    QLocale const locale;
    return locale.toString(time, locale.timeFormat(QLocale::ShortFormat).remove(seconds));
}

}

UpdateSettingsView::UpdateSettingsView(UpdateController& updates, QWidget* parent)
    : QWidget(parent)
    , m_updates(updates)
    , m_automatic(new QCheckBox(tr("Automatically check for updates"), this))
    , m_progress(new QProgressBar(this))
    , m_lastCheck(new QLabel(this))
    , m_automaticChecks(updates.automaticChecks.addNotifier([this] { refresh(); }))
    , m_checking(updates.isChecking.addNotifier([this] { refresh(); }))
    , m_checked(updates.lastCheck.addNotifier([this] { refresh(); }))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(m_automatic);
    auto* const row = new QHBoxLayout;
    row->setSpacing(rowSpacing);
    row->addWidget(new CheckForUpdatesView(updates, this), 0, Qt::AlignVCenter);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedWidth(progressWidth);
    m_progress->setAccessibleName(tr("Checking for updates"));
    row->addWidget(m_progress, 0, Qt::AlignVCenter);
    makeCaption(*m_lastCheck);
    row->addWidget(m_lastCheck, 0, Qt::AlignVCenter);
    row->addStretch();
    column->addLayout(row);
    // Clicked, not toggled: the box follows what the updater makes of it.
    connect(m_automatic, &QCheckBox::clicked, this, [this](bool isOn) {
        m_updates.setAutomaticallyChecksForUpdates(isOn);
        refresh();
    });
    refresh();
}

void UpdateSettingsView::refresh()
{
    m_automatic->setChecked(m_updates.automaticChecks);
    bool const isChecking = m_updates.isChecking;
    auto const& lastCheck = m_updates.lastCheck.value();
    m_progress->setVisible(isChecking);
    m_lastCheck->setVisible(!isChecking && lastCheck);
    if (!lastCheck)
        return;
    auto const time = lastCheck->toLocalTime();
    m_lastCheck->setText(
        tr("Last checked %1 at %2", "a date and a time of day").arg(shownDate(time.date()), shownTime(time.time())));
}

}
