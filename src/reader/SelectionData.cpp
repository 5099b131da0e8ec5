#include "reader/SelectionData.h"

namespace Quillory {

namespace {

QString const plainText = QStringLiteral("text/plain");

QString withoutPictures(AttributedText const& text, TextRange range)
{
    QString result;
    result.reserve(range.length);
    for (auto run = text.runAt(range.location); run < std::ssize(text.runs()); ++run) {
        auto const part = text.runs()[static_cast<std::size_t>(run)];
        if (part.location >= range.end())
            break;
        auto const start = std::max(part.location, range.location);
        auto const end = std::min(part.location + part.length, range.end());
        if (!text.attributes(part).attachment)
            result += QStringView(text.string()).sliced(start, end - start);
    }
    return result;
}

}

SelectionData::SelectionData(AttributedText text, TextRange range)
    : m_text(std::move(text))
    , m_range(range)
{
}

QStringList SelectionData::formats() const
{
    return { plainText };
}

bool SelectionData::hasFormat(QString const& type) const
{
    return type == plainText;
}

QVariant SelectionData::retrieveData(QString const& type, QMetaType) const
{
    return type == plainText ? QVariant(withoutPictures(m_text, m_range)) : QVariant();
}

}
