// Another program with an open menu, as far as the desktop can tell. Says so, and ends when the menu closes.

#include <QApplication>
#include <QMenu>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QMenu menu;
    menu.addAction(QStringLiteral("First"));
    menu.addAction(QStringLiteral("Second"));
    QObject::connect(&menu, &QMenu::aboutToHide, &application, &QCoreApplication::quit, Qt::QueuedConnection);
    menu.popup(QPoint(1000, 700));
    std::puts("open");
    std::fflush(stdout);
    return QApplication::exec();
}
