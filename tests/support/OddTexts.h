#pragma once

#include <QStringList>

namespace Quillory {

// What breaks texts, positions and layouts elsewhere, in pieces to repeat or to put together.
inline QStringList const& oddPieces()
{
    static QStringList const pieces { u"שלום"_qs, u"بسم الله"_qs, u"\u202Babc"_qs, u"\u202B\u2067a"_qs, u"\u2069"_qs,
        u"e\u0301\u0323"_qs, u"\u0301"_qs, u"漢字かな交じり文"_qs, u"한글"_qs, u"नमस्ते"_qs,
        u"\U0001F469\u200D\U0001F469\u200D\U0001F467"_qs, u"\U0001F469\u200D"_qs, u"\U0001F1E9\U0001F1EA"_qs,
        u"\U0001F44D\U0001F3FD"_qs, u"\U0001D4D0"_qs, u"1\uFE0F\u20E3"_qs, u"x"_qs.repeated(400), u"\t"_qs,
        u"\f\b\x1B\x7F"_qs, u"\v"_qs, u"\r"_qs, u"\u2028"_qs, u"\u2029"_qs, u"\u0085"_qs, u"\uFDD0"_qs, u"\uFDD1"_qs,
        u"\uFFFC"_qs, u"\uFFFF"_qs, u"\u00AD"_qs, u"\u200B"_qs, u"\u200D"_qs, u"\uFEFF"_qs, u"ﬁ"_qs, u"ß"_qs, u"İ"_qs,
        u"plain words "_qs, u"**"_qs, u"|"_qs, u"&#0;"_qs };
    return pieces;
}

}
