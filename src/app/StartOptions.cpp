#include "StartOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QStringList>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

QStringList decoded(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    return arguments;
}

}

std::expected<StartOptions, QString> StartOptions::parse(int argc, char** argv)
{
    QCoreApplication::setApplicationName(u"quillory"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLORY_VERSION));
    QCommandLineOption const toggle(u"toggle"_s, u"Show the reader, or send it away."_s);
    QCommandLineOption const connect(u"connect"_s, u"Connect this folder of sheets."_s, u"folder"_s);
    QCommandLineOption const spare(
        u"connect-if-none"_s, u"Connect this folder of sheets where none is connected."_s, u"folder"_s);
    QCommandLineOption const gesture(
        u"gesture"_s, u"Peek by tapping this key twice and holding it: shift, option (Alt) or off."_s, u"key"_s);
    QCommandLineOption const shortcuts(u"initial-shortcuts"_s,
        u"Store Ctrl+Alt+K to call the reader and Ctrl+Alt+J to peek, each where none is stored."_s);
    // Concerns updates alone, and takes one dash.
    QCommandLineOption capture(u"QuilloryCaptureLibrary"_s);
    capture.setFlags(QCommandLineOption::HiddenFromHelp);

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(u"Shows your own cheat sheets over whatever is in front."_s);
    auto const help = parser.addHelpOption();
    auto const version = parser.addVersionOption();
    parser.addOptions({ toggle, connect, spare, gesture, shortcuts, capture });
    if (!parser.parse(decoded(argc, argv)))
        return std::unexpected(parser.errorText());
    if (parser.isSet(help) || parser.isSet(version)) {
        QCoreApplication const application(argc, argv); // whose name the help begins with
        if (parser.isSet(help))
            parser.showHelp();
        parser.showVersion();
    }
    if (!parser.positionalArguments().isEmpty())
        return std::unexpected(u"\"%1\" is no option. To connect a folder, write --connect \"%1\"."_s.arg(
            parser.positionalArguments().first()));

    StartOptions options;
    if (parser.isSet(toggle))
        options.wish = ApplicationInstance::Wish::toggle;
    if (parser.isSet(connect))
        options.folder = QDir::current().absoluteFilePath(parser.value(connect));
    if (parser.isSet(spare))
        options.spareFolder = QDir::current().absoluteFilePath(parser.value(spare));
    options.initialShortcuts = parser.isSet(shortcuts);
    if (parser.isSet(gesture)) {
        options.gesture = modifierGestureFromRawValue(parser.value(gesture));
        if (!options.gesture)
            return std::unexpected(u"\"%1\" is no gesture: it is shift, option or off."_s.arg(parser.value(gesture)));
    }
    return options;
}

}
