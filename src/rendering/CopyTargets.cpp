#include "rendering/CopyTargets.h"

#include <algorithm>

namespace Quillory {

CopyTargets::Place CopyTargets::Place::inLine(qsizetype location, qsizetype length)
{
    auto place = block(location, length, location, length);
    place.isBlock = false;
    return place;
}

CopyTargets::Place CopyTargets::Place::block(
    qsizetype location, qsizetype length, qsizetype textLocation, qsizetype textLength)
{
    return {
        .location = static_cast<quint32>(location),
        .length = static_cast<quint32>(length),
        .textLocation = static_cast<quint32>(textLocation),
        .textLength = static_cast<quint32>(textLength),
        .isBlock = true,
    };
}

CopyTargets::CopyTargets(QString string, QList<Place> places, QStringList labels)
    : m_string(std::move(string))
    , m_places(std::move(places))
    , m_labels(std::move(labels))
{
    m_places.squeeze();
}

QStringView CopyTargets::text(qsizetype index) const
{
    return QStringView(m_string).sliced(m_places[index].textLocation, m_places[index].textLength);
}

CopyTarget CopyTargets::operator[](std::size_t position) const
{
    auto const index = static_cast<qsizetype>(position);
    return {
        .range = range(index),
        .text = text(index).toString(),
        .isBlock = isBlock(index),
        .accessibilityLabel = m_labels.isEmpty() ? std::nullopt : std::optional(m_labels[index]),
    };
}

bool CopyTargets::operator==(CopyTargets const& other) const
{
    return size() == other.size() && std::equal(begin(), end(), other.begin());
}

}
