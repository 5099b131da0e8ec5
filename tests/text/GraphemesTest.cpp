#include "text/Graphemes.h"

#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

TEST(Graphemes, Any_mixture_counts_as_the_boundary_finder_counts_it)
{
    // Without Indic scripts: the finder then judges their neighbours by the script of the whole run.
    std::array<QString, 18> const pieces { u"a"_s, u"\r"_s, u"\n"_s, u"\u0301"_s, u"ё"_s, u"ж"_s, u"ω"_s, u"中"_s,
        u"か"_s, u"\u3099"_s, u"한"_s, u"\u1112"_s, u"\u1161"_s, u"\U0001F468"_s, u"\u200D"_s, u"\U0001F1E6"_s,
        u"\u00AE"_s, u"\uFE0F"_s };
    std::mt19937 random(5);
    std::uniform_int_distribution<std::size_t> anyPiece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> anyLength(0, 12);
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (auto left = anyLength(random); left > 0; --left)
            text += pieces[anyPiece(random)];
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
        qsizetype expected = 0;
        while (finder.toNextBoundary() >= 0)
            ++expected;
        ASSERT_EQ(graphemeCount(text), expected) << text.toUtf8().toHex().toStdString();
    }
}

}
}
