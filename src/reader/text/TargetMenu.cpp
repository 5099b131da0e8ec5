#include "reader/text/TargetMenu.h"

#include "reader/text/TargetListModel.h"

#include <QKeyEvent>
#include <QListView>
#include <QVBoxLayout>
#include <QWidgetAction>

#include <memory>

namespace Quillory {

namespace {

constexpr qsizetype mostItems = 40; // as many as a menu shows well
constexpr int rowsInSight = 16;
constexpr int listWidth = 360;
constexpr int outline = 2;

// Rows that the keyboard walks through like the items above and below them.
class TargetList : public QListView {
public:
    using QListView::QListView;

protected:
    void focusInEvent(QFocusEvent* event) override
    {
        QListView::focusInEvent(event);
        if (!currentIndex().isValid())
            setCurrentIndex(model()->index(0, 0));
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        QListView::focusOutEvent(event);
        setCurrentIndex({});
    }
    void keyPressEvent(QKeyEvent* event) override
    {
        auto const row = currentIndex().row();
        auto const leaves = (event->key() == Qt::Key_Up && row <= 0)
            || (event->key() == Qt::Key_Down && row + 1 == model()->rowCount()) || event->key() == Qt::Key_Escape;
        if (leaves)
            event->ignore(); // the menu's own key
        else
            QListView::keyPressEvent(event);
    }
};

void addItems(QMenu& menu, qsizetype count, std::function<QString(qsizetype)> const& title,
    std::function<void(qsizetype)> const& chosen)
{
    for (qsizetype index = 0; index < count; ++index) {
        auto text = title(index);
        text.replace(u'&', QStringLiteral("&&"));
        menu.addAction(text, [chosen, index] { chosen(index); });
    }
}

void addList(QMenu& menu, qsizetype count, std::function<QString(qsizetype)> const& title,
    std::function<void(qsizetype)> const& chosen)
{
    auto* const frame = new QWidget(&menu); // what keeps the list off the menu's own outline
    auto* const rows = new QVBoxLayout(frame);
    rows->setContentsMargins(outline, 0, outline, outline);
    auto* const list = new TargetList(frame);
    rows->addWidget(list);
    // A menu hands the keyboard to an item's widget if that asks for it.
    frame->setFocusPolicy(Qt::StrongFocus);
    frame->setFocusProxy(list);
    list->setModel(new TargetListModel(count, title, list));
    list->setUniformItemSizes(true);
    list->setFrameShape(QFrame::NoFrame);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setMouseTracking(true);
    list->setTextElideMode(Qt::ElideRight);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Rows like the items above them.
    list->setStyleSheet(QStringLiteral(
        "QListView { background: transparent; outline: none; }"
        "QListView::item { padding: 4px 24px; border-radius: 2px; }"
        "QListView::item:selected { background: palette(highlight); color: palette(highlighted-text); }"));
    list->setFixedSize(listWidth, rowsInSight * list->sizeHintForRow(0));
    QObject::connect(list, &QListView::entered, list, [list](QModelIndex const& row) { list->setCurrentIndex(row); });
    // Both come on desktops where a click activates as well.
    auto const choose = [&menu, chosen, isDone = std::make_shared<bool>(false)](QModelIndex const& row) {
        if (std::exchange(*isDone, true))
            return;
        menu.close();
        chosen(row.row());
    };
    QObject::connect(list, &QListView::clicked, list, choose);
    QObject::connect(list, &QListView::activated, list, choose);
    auto* const item = new QWidgetAction(&menu);
    item->setDefaultWidget(frame);
    menu.addAction(item);
}

}

void addTargetItems(QMenu& menu, qsizetype count, std::function<QString(qsizetype)> const& title,
    std::function<void(qsizetype)> const& chosen)
{
    auto const inOneLine = [title](qsizetype index) { return title(index).replace(u'\n', u' '); };
    if (count <= mostItems)
        addItems(menu, count, inOneLine, chosen);
    else
        addList(menu, count, inOneLine, chosen);
}

}
