// Draws a sheet as the reader shows it into a picture, or tells a picture's colours along a line, so that borders and
// columns can be held against the numbers they should have.
//
//   quillory-picture SHEET PICTURE [--size 880x640] [--text-size 16] [--dark] [--at POINTS]
//   quillory-picture --window FOLDER PICTURE [--step STEP]...     the whole window, after these steps (WindowPicture.h)
//   quillory-picture --settings FOLDER PICTURE [--step STEP]...   the settings, likewise (SettingsPicture.h)
//   quillory-picture --row Y PICTURE        each stretch of one colour: where it begins, its length, the colour
//   quillory-picture --column X PICTURE
//
// QT_SCALE_FACTOR=2 gives a picture at 200 %. With --at -1 the end of the sheet is shown.

#include "SettingsPicture.h"
#include "WindowPicture.h"

#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "reader/NativeReader.h"
#include "support/FakeLibraryServices.h"
#include "words/InstalledWords.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QPalette>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTextStream>

#include <cstdlib>

using namespace Quillory;
using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(QString const& sentence)
{
    QTextStream(stderr) << "quillory-picture: " << sentence << '\n';
    std::exit(1);
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x2C2D30), QColor(0x232426));
    for (auto const role : { QPalette::Text, QPalette::WindowText, QPalette::ButtonText })
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Base, QColor(0x232426));
    return palette;
}

// As the program would load it, with the pictures and icons beside it.
Sheet sheetFrom(QString const& path)
{
    QFileInfo const file(path);
    auto const sheets = loadLibrary(PosixFileSystem(), QtPictureDecoder(), file.absolutePath());
    if (!sheets)
        fail(u"\"%1\" can't be listed: %2"_s.arg(file.absolutePath(), sheets.error().localizedDescription()));
    auto const* const sheet = findSheet(*sheets, file.fileName());
    if (!sheet)
        fail(u"\"%1\" is no sheet."_s.arg(path));
    if (sheet->error)
        fail(u"\"%1\": %2"_s.arg(path, *sheet->error));
    return *sheet;
}

QSize sizeIn(QCommandLineParser const& options)
{
    auto const size = options.value(u"size"_s).split(u'x');
    if (size.size() != 2)
        fail(u"--size needs a size such as 880x640."_s);
    return { size[0].toInt(), size[1].toInt() };
}

void drawWindow(QString const& folder, QString const& path, QCommandLineParser const& options)
{
    WindowPicture window(folder, sizeIn(options));
    for (auto const& step : options.values(u"step"_s)) {
        if (auto const taken = window.take(step); !taken)
            fail(taken.error());
    }
    if (!window.draw().save(path))
        fail(u"\"%1\" can't be written."_s.arg(path));
}

void drawSettings(QString const& folder, QString const& path, QCommandLineParser const& options)
{
    SettingsPicture settings(folder);
    for (auto const& step : options.values(u"step"_s)) {
        if (auto const taken = settings.take(step); !taken)
            fail(taken.error());
    }
    if (!settings.draw(sizeIn(options)).save(path))
        fail(u"\"%1\" can't be written."_s.arg(path));
}

void draw(Sheet const& sheet, QString const& path, QCommandLineParser const& options)
{
    FakeLibraryServices services;
    LibraryStore store(services.services(), LibraryStore::RestoreFolder::no);
    store.setTextSize(options.value(u"text-size"_s).toDouble());
    NotificationCenter notifications;
    NativeReader reader(
        store, { services.executor, services.clipboard, notifications, services.announcements }, [] { });
    auto& scroll = reader.scrollView();
    scroll.resize(sizeIn(options));
    scroll.show();
    reader.update(sheet);
    auto const settle = [&] {
        QCoreApplication::processEvents();
        services.executor.runPosted();
    };
    settle();
    auto& bar = *scroll.verticalScrollBar();
    auto const at = options.value(u"at"_s).toInt();
    bar.setValue(at < 0 ? bar.maximum() : at);
    settle();
    if (!scroll.grab().save(path))
        fail(u"\"%1\" can't be written."_s.arg(path));
    QTextStream(stdout) << "content " << scroll.textView().contentSize().width() << " x "
                        << scroll.textView().contentSize().height() << ", text "
                        << scroll.textView().textWidths().visible << " wide\n";
}

void tellRuns(QString const& path, int line, Qt::Orientation orientation)
{
    QImage const picture(path);
    auto const across = orientation == Qt::Horizontal;
    auto const length = across ? picture.width() : picture.height();
    if (line < 0 || line >= (across ? picture.height() : picture.width()))
        fail(u"\"%1\" has no such line."_s.arg(path));
    auto const colorAt = [&](int position) {
        return across ? picture.pixel(position, line) : picture.pixel(line, position);
    };
    QTextStream out(stdout);
    for (int start = 0, end = 0; start < length; start = end) {
        while (end < length && colorAt(end) == colorAt(start))
            ++end;
        out << start << ' ' << end - start << ' ' << QColor(colorAt(start)).name() << '\n';
    }
}

}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication const application(argc, argv);
    InstalledWords const words;
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({ { u"size"_s, u"Of the reader."_s, u"WxH"_s, u"880x640"_s },
        { u"text-size"_s, u"In points."_s, u"points"_s, u"16"_s }, { u"dark"_s, u"On dark."_s },
        { u"font-size"_s, u"Of the desktop."_s, u"pixels"_s },
        { u"window"_s, u"Draw the whole window over a folder."_s },
        { u"settings"_s, u"Draw the settings over a folder."_s },
        { u"step"_s, u"What is done in it before."_s, u"step"_s },
        { u"at"_s, u"Scrolled to there."_s, u"points"_s, u"0"_s }, { u"row"_s, u"Colours along it."_s, u"y"_s },
        { u"column"_s, u"Colours along it."_s, u"x"_s } });
    parser.process(application);
    auto const names = parser.positionalArguments();
    if (names.isEmpty())
        fail(u"Name a sheet and a picture, or a picture and a line of it."_s);
    if (parser.isSet(u"row"_s)) {
        tellRuns(names[0], parser.value(u"row"_s).toInt(), Qt::Horizontal);
        return 0;
    }
    if (parser.isSet(u"column"_s)) {
        tellRuns(names[0], parser.value(u"column"_s).toInt(), Qt::Vertical);
        return 0;
    }
    if (names.size() != 2)
        fail(u"Name a sheet and a picture."_s);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    if (parser.isSet(u"dark"_s))
        QApplication::setPalette(darkPalette());
    if (parser.isSet(u"font-size"_s)) {
        auto font = QApplication::font();
        font.setPixelSize(parser.value(u"font-size"_s).toInt());
        QApplication::setFont(font);
    }
    if (parser.isSet(u"window"_s))
        drawWindow(names[0], names[1], parser);
    else if (parser.isSet(u"settings"_s))
        drawSettings(names[0], names[1], parser);
    else
        draw(sheetFrom(names[0]), names[1], parser);
    return 0;
}
