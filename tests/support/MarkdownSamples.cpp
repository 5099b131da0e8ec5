#include "support/MarkdownSamples.h"

#include "support/Cases.h"
#include "support/Dice.h"

namespace Quillory {

namespace {

QByteArrayList stored(QString const& name)
{
    QByteArrayList texts;
    for (QJsonValue const text : tableOf(QStringLiteral(QUILLORY_MARKDOWN_SAMPLES), name))
        texts << text.toString().toUtf8();
    return texts;
}

QByteArrayList const pieces = stored(u"pieces"_s);
QByteArrayList const lineEnds = stored(u"lineEnds"_s);
QByteArrayList const prefixes = stored(u"prefixes"_s);
QByteArrayList const cells = stored(u"cells"_s);

}

QByteArrayList MarkdownSamples::snippets()
{
    return stored(u"snippets"_s);
}

QByteArray MarkdownSamples::random(std::uint32_t seed)
{
    Dice dice(seed);
    QByteArray text;
    for (auto lines = 1 + dice.below(14U); lines > 0; --lines) {
        text += dice.anyOf(prefixes);
        text += dice.mixture(pieces, 9);
        text += dice.anyOf(lineEnds);
    }
    return text;
}

QByteArray MarkdownSamples::randomTables(std::uint32_t seed)
{
    Dice dice(seed);
    QByteArray text;
    for (auto tables = 1 + dice.below(3); tables > 0; --tables) {
        QByteArray const end = dice.oneIn(4) ? "\r\n" : dice.oneIn(8) ? "\r" : "\n";
        auto const columns = 1 + dice.below(6);
        auto const inner = dice.oneIn(3) ? dice.anyOf(prefixes) : QByteArray();
        auto const addRow = [&](int width, QByteArrayList const& contents) {
            text += dice.oneIn(2) ? "|" : "";
            for (int column = 0; column < width; ++column)
                text += (column > 0 ? "|" : "") + dice.anyOf(contents);
            text += dice.oneIn(2) ? "|" : "";
            text += (dice.oneIn(6) ? " \v" : "") + end;
        };
        // Below a list marker, what follows is indented as far.
        auto const below = inner.startsWith('-') || inner.startsWith('1') ? QByteArray(inner.size(), ' ') : inner;
        if (dice.oneIn(3))
            text += "words" + end;
        text += inner;
        addRow(columns, cells);
        text += below;
        addRow(columns, { ":-", "---", "---" });
        for (auto rows = dice.below(7); rows > 0; --rows) {
            text += dice.oneIn(9) ? dice.anyOf(prefixes) : below;
            addRow(dice.below(columns + 2), cells);
        }
        if (!dice.oneIn(3))
            text += end;
    }
    return text;
}

}
