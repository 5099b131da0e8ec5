#include "reader/ReaderView.h"

#include "presentation/hover_help/HoverHelpHost.h"
#include "reader/BottomBar.h"
#include "reader/EmptyState.h"
#include "reader/FindBar.h"
#include "reader/FocusOrder.h"
#include "reader/MessageBar.h"
#include "reader/Panes.h"
#include "reader/ReaderDialogs.h"
#include "reader/ReaderKeys.h"
#include "reader/ReaderStyle.h"
#include "reader/ReadingSide.h"
#include "reader/SheetHeader.h"
#include "reader/Sidebar.h"
#include "reader/TopBar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

constexpr int separatorWidth = 1; // points

}

ReaderView::ReaderView(LibraryStore& store, ReaderServices services, std::function<void()> dismiss, QWidget* parent)
    : QWidget(parent)
    , m_store(store)
    , m_services(std::move(services))
    , m_dismiss(dismiss)
    , m_topBar(new TopBar(store, m_services.openSettings, this))
    , m_sidebar(new Sidebar(
          store, [this] { textView()->setFocus(); }, this))
    , m_reading(new ReadingSide(store, m_services, std::move(dismiss), this))
    , m_bottomBar(new BottomBar(store, m_services.executor, this))
    , m_dialogs(new ReaderDialogs(store, m_services, *this))
    , m_keys(new ReaderKeys(*textView()))
{
    setObjectName(QStringLiteral("reader"));
    setAttribute(Qt::WA_StyledBackground);
    new HoverHelpHost(*this, m_services.executor, m_services.notifications);
    layOut();
    connectBars();
    setFocusProxy(textView());
    // Or another palette of the desktop would not get through the window's style.
    QCoreApplication::setAttribute(Qt::AA_UseStyleSheetPropagationInWidgetStyles);
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
    auto* const textSize = &m_topBar->textSize();
    connect(textSize, &BarButton::clicked, m_dialogs, [this, textSize] { m_dialogs->toggleTextSize(*textSize); });
    connect(&m_reading->header(), &SheetHeader::findToggled, this,
        [this] { m_store.findVisible ? closeFind() : openFind(); });
    connect(&m_reading->findBar(), &FindBar::queryEdited, this,
        [this](QString const& query) { m_store.findQuery.assignAs<ReaderView>(query); });
    connect(&m_reading->findBar(), &FindBar::closed, this, &ReaderView::closeFind);
    connect(&m_reading->emptyState(), &EmptyState::chooseFolder, m_dialogs, &ReaderDialogs::chooseFolder);
    connect(&m_reading->emptyState(), &EmptyState::installStarters, m_dialogs, &ReaderDialogs::showStarters);
    connect(&m_reading->messageBar(), &MessageBar::chooseFolder, m_dialogs, &ReaderDialogs::chooseFolder);
    auto* const actions = &m_bottomBar->actions();
    connect(actions, &BarButton::clicked, m_dialogs,
        [this, actions] { m_dialogs->showActions(*actions, [this] { openFind(); }); });
    m_keys->perform = [this](ReaderCommand command) { perform(command); };
    m_keys->changeTextSize = [this](int points) { changeTextSize(m_store.textSize + points); };
    for (auto* const field : findChildren<QLineEdit*>())
        m_keys->watch(*field);
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
        m_store.message, m_store.busy, m_store.textSize, m_store.keyNames, m_store.learningModeEnabled,
        m_store.peekModifiers, m_store.pinnedIDs, m_store.filePanel, m_store.findVisible, m_store.findQuery,
        m_store.findRequest, m_store.findStatus);
}

void ReaderView::startAfresh()
{
    m_sidebar->list().showSelection();
    m_reading->reader().startAfresh();
    m_dialogs->closeAll();
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
    auto const state = ReaderWindowState::of(m_store);
    if (std::exchange(m_shownTextSize, state.textSize) != state.textSize)
        m_reading->refreshFonts(state.textSize);
    setWindowTitle(state.title);
    m_topBar->refresh(state);
    m_bottomBar->refresh(state);
    m_reading->refresh(state);
    m_dialogs->refresh(state);
}

void ReaderView::takeKeyboard()
{
    if (!m_dialogs->keyboardScope())
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
    return m_keys->take(event);
}

void ReaderView::perform(ReaderCommand command)
{
    using enum ReaderCommand;
    if (command == quit)
        return m_services.quit();
    if (m_dialogs->areStartersShown()) // which have the keyboard for themselves
        return command == dismiss ? m_dialogs->closeStarters() : void();
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

void ReaderView::changeTextSize(double size)
{
    m_store.setTextSize(std::clamp(size, Preferences::minimumTextSize, Preferences::maximumTextSize));
}

bool ReaderView::focusNextPrevChild(bool forwards)
{
    auto* const dialog = m_dialogs->keyboardScope();
    auto const stops = FocusOrder::stops(dialog ? *dialog : *this, { m_sidebar, textView() });
    auto* const next = FocusOrder::next(stops, window()->focusWidget(), forwards);
    if (next)
        next->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return next != nullptr;
}

void ReaderView::searchLibrary()
{
    m_store.librarySearchVisible.assignAs<ReaderView>(true);
    auto& field = m_sidebar->searchField();
    field.setFocus(Qt::ShortcutFocusReason);
    field.selectAll();
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

}
