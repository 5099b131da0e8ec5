#include "words/Wording.h"

#include "support/Test.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace Quillory {
namespace {

QByteArray resource(QString const& name)
{
    QFile file(QStringLiteral(QUILLORY_RESOURCES "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

struct Message {
    QString source;
    QStringList translations; // several of a count
    bool isFinished = true;
};

// `scripts/check texts` holds the file against the texts of the source.
QList<Message> messagesIn(QString const& name)
{
    QList<Message> messages;
    QXmlStreamReader reader(resource(name));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"source") {
            messages.append({ reader.readElementText(), {}, true });
        } else if (reader.name() == u"translation") {
            messages.last().isFinished = !reader.attributes().hasAttribute(u"type"_s);
            auto const text = reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            messages.last().translations << text;
        }
    }
    return messages;
}

QStringList marks(QString const& text)
{
    static QRegularExpression const mark(u"%[0-9n]|\t"_s);
    QStringList found;
    for (auto each = mark.globalMatch(text); each.hasNext();)
        found << each.next().captured();
    found.sort();
    found.removeDuplicates();
    return found;
}

TEST(Wording, Each_source_text_still_exists_and_no_text_with_a_foreign_word_lacks_a_wording)
{
    Wording const wording(resource(u"wording.json"_s));
    auto const messages = messagesIn(u"translations/quillory_de.ts"_s);
    ASSERT_GT(messages.size(), 200);
    static QRegularExpression const foreign(
        u"[⌘⌥⌃]|Finder|[Mm]enu[- ]bar|macOS|\\bOption\\b|Input Monitoring|Privacy & Security|Accessibility access"_s);
    QStringList sources;
    for (auto const& message : messages) {
        sources << message.source;
        bool const isForeign = foreign.match(message.source).hasMatch();
        EXPECT_TRUE(!isForeign || wording.pairs().contains(message.source)) << message.source.toStdString();
        EXPECT_FALSE(foreign.match(message.translations.join(u' ')).hasMatch()) << message.source.toStdString();
    }
    for (auto const& [source, forms] : wording.pairs().asKeyValueRange()) {
        EXPECT_THAT(sources, Contains(source));
        for (auto const& form : forms) {
            EXPECT_FALSE(foreign.match(form).hasMatch()) << form.toStdString();
            EXPECT_EQ(marks(form), marks(source)) << form.toStdString();
        }
    }
}

TEST(Wording, The_german_translation_is_complete_and_keeps_every_place_for_a_value)
{
    for (auto const& message : messagesIn(u"translations/quillory_de.ts"_s)) {
        EXPECT_TRUE(message.isFinished) << message.source.toStdString();
        for (auto const& text : message.translations) {
            EXPECT_FALSE(text.isEmpty()) << message.source.toStdString();
            EXPECT_EQ(marks(text), marks(message.source)) << message.source.toStdString();
        }
    }
}

TEST(Wording, A_count_chooses_the_form_and_other_texts_are_nobodys)
{
    Wording const wording(R"({ "A": "B", "%n x": ["%n one", "%n many"] })");
    EXPECT_EQ(wording.translate("any", "A"), u"B"_s);
    EXPECT_EQ(wording.translate("any", "%n x", nullptr, 1), u"%n one"_s);
    EXPECT_EQ(wording.translate("any", "%n x", nullptr, 0), u"%n many"_s);
    EXPECT_TRUE(wording.translate("any", "C").isNull());
}

}
}
