#pragma once

#include "rendering/CopyTarget.h"

#include <QList>
#include <QStringList>
#include <QStringView>

#include <cstddef>

namespace Quillory {

// The targets of a text, in the order of their ranges. A text may have a hundred thousand: they are held as places in it,
// and each is made when it is asked for. An immutable value, cheap to copy.
class CopyTargets {
public:
    // A target whose text stands in the string that the targets have in common.
    struct Place {
        quint32 location = 0;
        quint32 length = 0;
        quint32 textLocation = 0;
        quint32 textLength = 0;
        bool isBlock = false;

        static Place inLine(qsizetype location, qsizetype length);
        static Place block(qsizetype location, qsizetype length, qsizetype textLocation, qsizetype textLength);
    };
    class Iterator;

    CopyTargets() = default;
    // As many labels as places, or none.
    CopyTargets(QString string, QList<Place> places, QStringList labels = {});

    std::size_t size() const { return static_cast<std::size_t>(m_places.size()); }
    bool empty() const { return m_places.isEmpty(); }
    CopyTarget operator[](std::size_t index) const;
    Iterator begin() const;
    Iterator end() const;

    // Properties of a target, without making it.
    TextRange range(qsizetype index) const { return { m_places[index].location, m_places[index].length }; }
    QStringView text(qsizetype index) const;
    bool isBlock(qsizetype index) const { return m_places[index].isBlock; }

    bool operator==(CopyTargets const& other) const;

private:
    QString m_string;
    QList<Place> m_places;
    QStringList m_labels;
};

class CopyTargets::Iterator {
public:
    using difference_type = std::ptrdiff_t;
    using value_type = CopyTarget;

    Iterator() = default;
    Iterator(CopyTargets const& targets, std::size_t index)
        : m_targets(&targets)
        , m_index(index)
    {
    }
    CopyTarget operator*() const { return (*m_targets)[m_index]; }
    Iterator& operator++()
    {
        ++m_index;
        return *this;
    }
    Iterator operator++(int) { return { *m_targets, m_index++ }; }
    bool operator==(Iterator const& other) const { return m_index == other.m_index; }

private:
    CopyTargets const* m_targets = nullptr;
    std::size_t m_index = 0;
};

inline CopyTargets::Iterator CopyTargets::begin() const
{
    return { *this, 0 };
}

inline CopyTargets::Iterator CopyTargets::end() const
{
    return { *this, size() };
}

}
