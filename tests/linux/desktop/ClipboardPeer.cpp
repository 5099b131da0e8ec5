// Another program with a clipboard: `own MODE TEXT` keeps the text there until its input ends, `read MODE` prints it.

#include <QClipboard>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    auto const arguments = QGuiApplication::arguments();
    auto const mode = arguments.value(2) == QStringLiteral("selection") ? QClipboard::Selection : QClipboard::Clipboard;
    auto* const clipboard = QGuiApplication::clipboard();
    if (arguments.value(1) == QStringLiteral("read"))
        return std::fputs(clipboard->text(mode).toUtf8().constData(), stdout) < 0;
    clipboard->setText(arguments.value(3), mode);
    std::puts(clipboard->text(mode) == arguments.value(3) ? "owns" : "failed");
    std::fflush(stdout);
    QSocketNotifier end(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &application, &QGuiApplication::quit);
    return QGuiApplication::exec();
}
