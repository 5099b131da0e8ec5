#include "reader/TopBar.h"

#include "reader/Panes.h"

#include <QHBoxLayout>
#include <QLabel>

namespace Quillory {

namespace {

// Below this width in characters of the bar's font the Learning Mode toggle is its symbol alone.
constexpr int charactersForText = 48;

}

TopBar::TopBar(LibraryStore& store, std::function<void()> openSettings, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_textSize(new BarButton(QStringLiteral("textformat.size"), tr("Reader text size"),
          tr("Adjust reader text size; shortcut symbols stay larger"), this))
    , m_learningMode(new BarButton(QStringLiteral("graduationcap"), tr("Learning Mode"), QString(), this))
    , m_pin(new BarButton(QStringLiteral("pin"), QString(), QString(), this))
{
    makePane(*this, "chrome");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(14, 6, 6, 6);
    row->setSpacing(4);
    auto* const name = new QLabel(QStringLiteral("Quillory"), this);
    auto font = name->font();
    font.setWeight(QFont::DemiBold);
    name->setFont(font);
    row->addWidget(name, 1);

    m_textSize->setObjectName(QStringLiteral("textSizeButton"));
    row->addWidget(m_textSize);
    m_learningMode->setObjectName(QStringLiteral("learningModeToggle"));
    m_learningMode->setCheckable(true);
    connect(m_learningMode, &BarButton::toggled, this, [this](bool isOn) { m_store.setLearningModeEnabled(isOn); });
    row->addWidget(m_learningMode);
    connect(m_pin, &BarButton::clicked, this, [this] {
        if (auto const* const sheet = m_store.selectedSheet())
            m_store.togglePin(sheet->id);
    });
    row->addWidget(m_pin);
    auto* const settings = new BarButton(
        QStringLiteral("gearshape"), tr("Settings"), tr("Open settings for your folder, shortcuts, and reader"), this);
    settings->setEnabled(static_cast<bool>(openSettings));
    connect(settings, &BarButton::clicked, this, [open = std::move(openSettings)] { open(); });
    row->addWidget(settings);
    auto* const close = makeCloseButton(this, tr("Close"), tr("Close"));
    connect(close, &BarButton::clicked, this, [this] { window()->close(); });
    row->addWidget(close);
}

void TopBar::refresh(ReaderWindowState const& state)
{
    m_textSize->setValue({ state.textSize, tr("%1 points").arg(qRound(state.textSize)) });
    auto const isOn = state.learningModeEnabled;
    m_learningMode->setChecked(isOn);
    setHelp(*m_learningMode,
        isOn ? tr("Turn off Learning Mode to copy commands again")
             : tr("Turn on Learning Mode to disable copying and practise typing commands"));
    m_pin->setVisible(state.hasSheet());
    m_pin->setSymbol(state.isPinned ? QStringLiteral("pin.fill") : QStringLiteral("pin"));
    m_pin->setAccessibleName(state.isPinned ? tr("Unpin sheet") : tr("Pin sheet"));
    setHelp(*m_pin,
        state.isPinned ? tr("Remove this sheet’s menu-bar shortcut") : tr("Add a menu-bar shortcut for this sheet"));
}

void TopBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    auto const isWide = width() >= charactersForText * fontMetrics().averageCharWidth();
    m_learningMode->setText(isWide ? tr("Learning Mode") : QString());
    m_learningMode->updateGeometry();
}

}
