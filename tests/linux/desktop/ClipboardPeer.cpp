// Another program with a clipboard: `own MODE TEXT` keeps the text there until its input ends, `read MODE` prints it.

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QWindow>

#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    auto const arguments = QGuiApplication::arguments();
    auto const mode = arguments.value(2) == QStringLiteral("selection") ? QClipboard::Selection : QClipboard::Clipboard;
    auto* const clipboard = QGuiApplication::clipboard();
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        return 1;
    if (arguments.value(1) == QStringLiteral("read")) {
        output.write(clipboard->text(mode).toUtf8());
        return 0;
    }
    clipboard->setText(arguments.value(3), mode);
    output.write(clipboard->text(mode) == arguments.value(3) ? "owns\n" : "failed\n");
    output.flush();
    QSocketNotifier end(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &application, &QGuiApplication::quit);
    return QGuiApplication::exec();
}
