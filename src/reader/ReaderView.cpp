#include "reader/ReaderView.h"

#include "presentation/hover_help/HoverHelpHost.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "reader/ActionsMenu.h"
#include "reader/BottomBar.h"
#include "reader/EmptyState.h"
#include "reader/FindBar.h"
#include "reader/FocusOrder.h"
#include "reader/Panes.h"
#include "reader/ReaderStyle.h"
#include "reader/ReadingSide.h"
#include "reader/SheetHeader.h"
#include "reader/SheetOverlay.h"
#include "reader/Sidebar.h"
#include "reader/StarterSelectionView.h"
#include "reader/TextSizePopover.h"
#include "reader/TopBar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

constexpr int separatorWidth = 1; // points
constexpr int wheelStep = QWheelEvent::DefaultDeltasPerStep;

}

ReaderView::ReaderView(LibraryStore& store, ReaderServices services, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_services(std::move(services))
    , m_dismiss(dismiss)
    , m_topBar(new TopBar(store, m_services.openSettings, this))
    , m_sidebar(new Sidebar(
          store, m_services.executor, [this] { textView()->setFocus(); }, this))
    , m_reading(new ReadingSide(store, m_services, std::move(dismiss), this))
    , m_bottomBar(new BottomBar(store, m_services.executor, this))
{
    setObjectName(QStringLiteral("reader"));
    setAttribute(Qt::WA_StyledBackground);
    new HoverHelpHost(*this, m_services.executor, m_services.notifications);
    layOut();
    connectBars();
    setFocusProxy(textView());
    applyStyle();
    observeStore();
    refresh();
}

ReaderView::~ReaderView() = default;

void ReaderView::layOut()
{
    auto const separator = [this](bool isHorizontal) {
        auto* const made = makeSeparator(this);
        isHorizontal ? made->setFixedHeight(separatorWidth) : made->setFixedWidth(separatorWidth);
        return made;
    };
    auto* const rows = new QVBoxLayout(this);
    rows->setSizeConstraint(QLayout::SetNoConstraint); // where room is short, the highest banners give some up
    rows->setContentsMargins(separatorWidth, separatorWidth, separatorWidth, separatorWidth); // room for the outline
    rows->setSpacing(0);
    rows->addWidget(m_topBar);
    rows->addWidget(separator(true));
    auto* const columns = new QHBoxLayout;
    columns->setSpacing(0);
    columns->addWidget(m_sidebar);
    columns->addWidget(separator(false));
    columns->addWidget(m_reading, 1);
    rows->addLayout(columns, 1);
    rows->addWidget(separator(true));
    rows->addWidget(m_bottomBar);
}

void ReaderView::connectBars()
{
    connect(&m_topBar->textSize(), &BarButton::clicked, this, &ReaderView::toggleTextSize);
    connect(&m_reading->header(), &SheetHeader::findToggled, this,
        [this] { m_store.findVisible ? closeFind() : openFind(); });
    connect(&m_reading->findBar(), &FindBar::queryEdited, this,
        [this](QString const& query) { m_store.findQuery.assignAs<ReaderView>(query); });
    connect(&m_reading->findBar(), &FindBar::closed, this, &ReaderView::closeFind);
    connect(&m_reading->emptyState(), &EmptyState::chooseFolder, this, &ReaderView::chooseFolder);
    connect(&m_reading->emptyState(), &EmptyState::installStarters, this, &ReaderView::showStarters);
    connect(&m_bottomBar->actions(), &BarButton::clicked, this, &ReaderView::showActions);
    textView()->installEventFilter(this);
    // Fields take the command keys for themselves otherwise.
    for (auto* const field : findChildren<QLineEdit*>())
        field->installEventFilter(this);
}

QWidget* ReaderView::topBar() const
{
    return m_topBar;
}

ReaderTextView* ReaderView::textView() const
{
    return &m_reading->reader().scrollView().textView();
}

void ReaderView::observeStore()
{
    auto const follow = [this](auto&... properties) {
        (m_observations.push_back(properties.addNotifier([this] { refreshLater(); })), ...);
    };
    follow(m_store.sheets, m_store.selectedID, m_store.libraryQuery, m_store.libraryResults, m_store.folder,
        m_store.message, m_store.busy, m_store.textSize, m_store.learningModeEnabled, m_store.peekModifiers,
        m_store.pinnedIDs, m_store.filePanel, m_store.findVisible, m_store.findQuery, m_store.findRequest,
        m_store.findStatus);
}

void ReaderView::startAfresh()
{
    m_sidebar->list().showSelection();
    m_reading->reader().startAfresh();
    if (m_starters)
        m_starters->close();
    if (m_textSize)
        m_textSize->close();
}

void ReaderView::refreshLater()
{
    if (!m_refreshTask.isActive())
        m_refreshTask = m_services.executor.post([this] { refresh(); });
}

void ReaderView::refresh()
{
    m_refreshTask.end();
    m_sidebar->refresh();
    auto state = ReaderWindowState::of(m_store);
    if (!m_state || m_state->textSize != state.textSize) {
        m_reading->refreshFonts(state.textSize);
        if (m_textSize)
            m_textSize->setTextSize(state.textSize);
    }
    setWindowTitle(state.title);
    m_topBar->refresh(state);
    m_bottomBar->refresh(state);
    m_reading->refresh(state);
    m_state = std::move(state);
}

void ReaderView::takeKeyboard()
{
    if (!m_starters)
        m_reading->takeKeyboard();
}

void ReaderView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        applyStyle();
}

void ReaderView::applyStyle()
{
    m_reading->refreshFonts(m_store.textSize);
    if (auto const sheet = ReaderStyle::sheet(palette(), QApplication::font()); sheet != styleSheet())
        setStyleSheet(sheet);
}

void ReaderView::keyPressEvent(QKeyEvent* event)
{
    if (!perform(*event))
        QWidget::keyPressEvent(event);
}

bool ReaderView::perform(QKeyEvent const& event)
{
    auto const command = readerCommandOf(event.key(), textView()->modifiersWithoutPeek(event.modifiers()));
    if (command)
        perform(*command);
    return command.has_value();
}

void ReaderView::perform(ReaderCommand command)
{
    using enum ReaderCommand;
    if (command == quit)
        return m_services.quit();
    if (m_starters) // has the keyboard for itself
        return command == dismiss ? m_starters->close() : void();
    switch (command) {
    case searchLibrary:
        return this->searchLibrary();
    case find:
        return openFind();
    case ReaderCommand::refresh:
        return m_store.refresh();
    case largerText:
        return changeTextSize(m_store.textSize + 1);
    case smallerText:
        return changeTextSize(m_store.textSize - 1);
    case usualText:
        return changeTextSize(Preferences::defaultTextSize);
    case dismiss:
        if (!m_store.filePanel.value())
            m_dismiss();
        return;
    case quit:
        return;
    }
}

bool ReaderView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == textView())
        return event->type() == QEvent::Wheel && turnTextSize(static_cast<QWheelEvent const&>(*event));
    bool const isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey)
        return false;
    auto const& key = static_cast<QKeyEvent const&>(*event);
    auto const command = readerCommandOf(key.key(), textView()->modifiersWithoutPeek(key.modifiers()));
    if (!command || command == ReaderCommand::dismiss) // which a field may have a use of its own for
        return false;
    if (event->type() == QEvent::KeyPress)
        perform(key);
    event->accept();
    return true;
}

// Ctrl with the wheel, unless it is a peek that holds Ctrl.
bool ReaderView::turnTextSize(QWheelEvent const& wheel)
{
    if (textView()->modifiersWithoutPeek(wheel.modifiers()) != ModifierFlags::control)
        return false;
    m_wheelTurned += wheel.angleDelta().y();
    auto const steps = m_wheelTurned / wheelStep;
    m_wheelTurned -= steps * wheelStep;
    if (steps != 0)
        changeTextSize(m_store.textSize + steps);
    return true;
}

void ReaderView::changeTextSize(double size)
{
    m_store.setTextSize(std::clamp(size, Preferences::minimumTextSize, Preferences::maximumTextSize));
}

bool ReaderView::focusNextPrevChild(bool forwards)
{
    QWidget* scope = this;
    if (m_starters)
        scope = m_starters;
    else if (m_textSize && m_textSize->isVisible())
        scope = m_textSize;
    auto* const next = FocusOrder::next(
        FocusOrder::stops(*scope, { m_sidebar, textView() }), window()->focusWidget(), forwards);
    if (next)
        next->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return next != nullptr;
}

void ReaderView::searchLibrary()
{
    m_store.librarySearchVisible.assignAs<ReaderView>(true);
    if (auto* const field = m_sidebar->findChild<QLineEdit*>()) {
        field->setFocus(Qt::ShortcutFocusReason);
        field->selectAll();
    }
}

void ReaderView::openFind()
{
    m_store.findVisible.assignAs<ReaderView>(true);
    refresh();
    m_reading->findBar().takeKeyboard();
}

void ReaderView::closeFind()
{
    bool const hasKeyboard = m_reading->findBar().isAncestorOf(window()->focusWidget());
    m_store.findVisible.assignAs<ReaderView>(false);
    m_store.findQuery.assignAs<ReaderView>(QString());
    if (hasKeyboard)
        takeKeyboard();
}

void ReaderView::toggleTextSize()
{
    if (!m_textSize) {
        m_textSize = new TextSizePopover(m_topBar->textSize(), this);
        m_textSize->setTextSize(m_store.textSize);
        connect(m_textSize, &TextSizePopover::textSizeChosen, this, &ReaderView::changeTextSize);
    }
    HoverHelpTrackingView::of(m_topBar->textSize()).dismiss(); // it would lie over the popover
    m_textSize->isHidden() ? m_textSize->open() : m_textSize->close();
}

void ReaderView::showStarters()
{
    if (m_starters)
        return;
    auto* const selection = new StarterSelectionView(this);
    m_starters = new SheetOverlay(selection, *this);
    connect(selection, &StarterSelectionView::cancelled, m_starters, &SheetOverlay::close);
    connect(selection, &StarterSelectionView::chosen, m_starters, [this](QStringList const& names) {
        m_store.installStarters(names);
        m_starters->close();
    });
}

void ReaderView::showActions()
{
    ActionsMenu const actions { m_store, [this] { openFind(); }, [this] { showStarters(); }, m_services.openSettings,
        m_services.quit };
    auto* const menu = actions.make(ReaderWindowState::of(m_store), *this).release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto const& button = m_bottomBar->actions();
    auto const corner = button.mapToGlobal(QPoint(button.width() - menu->sizeHint().width(), 0));
    menu->popup(corner - QPoint(0, menu->sizeHint().height()));
}

void ReaderView::chooseFolder()
{
    m_store.chooseFolder(window()->winId());
}

}
