#include "library/ShortcutSheet.h"
#include "support/Test.h"

#include <QFile>
#include <QRegularExpression>

namespace Quillory {
namespace {

// The document that a line of documents.txt stands for.
QByteArray spelledOut(QString text)
{
    static QRegularExpression const repetition(u"<(\\d+)([*,])((?:[^<>]|<x..>)*)>"_s), byte(u"<x(..)>"_s);
    for (auto match = repetition.match(text); match.hasMatch(); match = repetition.match(text)) {
        auto const separator = match.captured(2) == u"," ? u","_s : QString();
        auto const all = (match.captured(3) + separator).repeated(match.captured(1).toInt());
        text.replace(match.capturedStart(), match.capturedLength(), all.chopped(separator.size()));
    }
    auto parts = text.split(u'#');
    text = parts.takeFirst();
    for (int number = 0; auto const& part : parts)
        text += QString::number(number++) + part;
    QByteArray bytes;
    qsizetype written = 0;
    for (auto const& match : byte.globalMatch(text)) {
        bytes += text.sliced(written, match.capturedStart() - written).toUtf8()
            + QByteArray::fromHex(match.captured(1).toLatin1());
        written = match.capturedEnd();
    }
    return bytes + text.sliced(written).toUtf8();
}

TEST(ShortcutSheet, What_is_told_of_a_document_is_what_stands_below_it)
{
    QFile file(QStringLiteral(QUILLORY_DOCUMENTS));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString frame, document;
    int cases = 0;
    for (auto const& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (line.startsWith(u"within "))
            frame = line.sliced(7);
        else if (!line.startsWith(u"    "))
            document = line;
        if (!line.startsWith(u"    "))
            continue;
        auto const sheet = ShortcutSheet::decode(spelledOut(QString(frame).replace(u'%', document)));
        EXPECT_EQ(sheet ? u"valid"_s : sheet.error().message, line.sliced(4)) << document.toStdString();
        ++cases;
    }
    EXPECT_GT(cases, 200);
}

TEST(ShortcutSheet, Every_field_arrives_as_written)
{
    auto const sheet = ShortcutSheet::decode(R"({"icon":"icons/a.png","future":{"deep":[1,{"x":null}]},"sections":[
        {"id":"edit","title":" Edit ","description":"","icon":"icons/b.png","entries":[
            {"id":"copy","title":"Copy","text":"Takes\r\nit","shortcuts":[
                {"steps":[{"modifiers":["shift","command"],"key":"p"},{"modifiers":[],"key":"\u0065"}]},
                {"steps":[{"key":"space","modifiers":["function"]}]}]},
            {"id":"none","title":"a\u0000b","text":null,"shortcuts":[]}]},
        {"id":"empty","title":"Empty","entries":[]}],
        "description":"All \"keys\" \ud83d\ude00","title":"Editor","schemaVersion":1})");
    ASSERT_TRUE(sheet) << sheet.error().message.toStdString();

    ShortcutSheet expected;
    expected.schemaVersion = 1;
    expected.title = u"Editor"_s;
    expected.description = u"All \"keys\" \U0001F600"_s;
    expected.icon = u"icons/a.png"_s;
    expected.sections = {
        { u"edit"_s, u" Edit "_s, u""_s,
            { { u"copy"_s, u"Copy"_s, u"Takes\r\nit"_s,
                  { { { { { u"shift"_s, u"command"_s }, u"p"_s }, { {}, u"e"_s } } },
                      { { { { u"function"_s }, u"space"_s } } } } },
                { u"none"_s, u'a' + QString(QChar(0)) + u'b', std::nullopt, {} } },
            u"icons/b.png"_s },
        { u"empty"_s, u"Empty"_s, std::nullopt, {}, std::nullopt },
    };
    EXPECT_EQ(*sheet, expected);
    EXPECT_EQ(sheet->icons(), (QStringList { u"icons/a.png"_s, u"icons/b.png"_s }));
}

}
}
