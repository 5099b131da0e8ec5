#include "support/MarkdownSamples.h"

#include "support/Dice.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace std::literals;
using namespace Qt::StringLiterals;

namespace Quillory {

namespace {

std::vector<std::string> stored(QString const& name)
{
    static auto const all = [] {
        QFile file(QStringLiteral(QUILLORY_MARKDOWN_SAMPLES));
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }();
    std::vector<std::string> texts;
    for (auto const& text : all.value(name).toArray())
        texts.push_back(text.toString().toStdString());
    return texts;
}

std::vector<std::string> const pieces = stored(u"pieces"_s);
std::vector<std::string> const lineEnds = stored(u"lineEnds"_s);
std::vector<std::string> const prefixes = stored(u"prefixes"_s);
std::vector<std::string> const cells = stored(u"cells"_s);

}

std::vector<std::string> const& MarkdownSamples::snippets()
{
    static auto const all = stored(u"snippets"_s);
    return all;
}

std::string MarkdownSamples::random(std::uint32_t seed)
{
    Dice dice(seed);
    std::string text;
    for (auto lines = 1 + dice.below(14U); lines > 0; --lines) {
        text += dice.anyOf(prefixes);
        for (auto count = dice.below(9); count > 0; --count)
            text += dice.anyOf(pieces);
        text += dice.anyOf(lineEnds);
    }
    return text;
}

std::string MarkdownSamples::randomTables(std::uint32_t seed)
{
    Dice dice(seed);
    std::string text;
    for (auto tables = 1 + dice.below(3); tables > 0; --tables) {
        std::string_view const end = dice.oneIn(4) ? "\r\n" : dice.oneIn(8) ? "\r" : "\n";
        auto const columns = 1 + dice.below(std::size_t { 6 });
        auto const inner = dice.oneIn(3) ? std::string(dice.anyOf(prefixes)) : std::string();
        auto const row = [&](std::size_t width, auto cell) {
            std::string line(dice.oneIn(2) ? "|" : "");
            for (std::size_t column = 0; column < width; ++column)
                line += (column ? "|" : "") + std::string(cell());
            return line + (dice.oneIn(2) ? "|" : "") + std::string(dice.oneIn(6) ? " \v" : "");
        };
        auto const content = [&] { return dice.anyOf(cells); };
        // Below a list marker, what follows is indented as far.
        auto const below = inner.starts_with('-') || inner.starts_with('1') ? std::string(inner.size(), ' ') : inner;
        if (dice.oneIn(3))
            text += "words" + std::string(end);
        text += inner + row(columns, content) + std::string(end);
        text += below + row(columns, [&] { return dice.oneIn(3) ? ":-"sv : "---"sv; }) + std::string(end);
        for (auto rows = dice.below(7); rows > 0; --rows)
            text += (dice.oneIn(9) ? std::string(dice.anyOf(prefixes)) : below) + row(dice.below(columns + 2), content)
                + std::string(end);
        if (!dice.oneIn(3))
            text += end;
    }
    return text;
}

std::string MarkdownSamples::repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    while (count-- > 0)
        text += piece;
    return text;
}

}
