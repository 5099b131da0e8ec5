#pragma once

#include "textlayout/HeightTree.h"

#include <QDeadlineTimer>

#include <vector>

namespace Quillory {

// Things stacked on one another whose heights are estimates until each is measured. Knows how far measuring has come, and
// goes through what is in sight and through what is left; what a thing is and how it is measured is told by the caller.
class HeightStack {
public:
    struct Extent {
        double height = 0;
        bool exact = false;
    };
    // From the first to before the end.
    struct Span {
        qsizetype first = 0;
        qsizetype end = 0;
        bool contains(qsizetype index) const { return index >= first && index < end; }
    };
    // A place in one of them, by the height that it has by now.
    struct Place {
        qsizetype index = 0;
        double offset = 0; // from its top
        double height = 0;
    };

    HeightStack() = default;
    explicit HeightStack(std::vector<Extent> const& extents);

    qsizetype size() const { return m_heights.size(); }
    double height(qsizetype index) const { return m_heights.height(index); }
    double top(qsizetype index) const { return m_heights.top(index); }
    double total() const { return m_heights.total(); }
    qsizetype indexAt(double y) const { return m_heights.indexAt(y); }
    bool isExact() const { return m_inexact == 0; }
    bool isExact(qsizetype index) const { return m_exact[static_cast<std::size_t>(index)]; }

    // Once exact, a height stays so.
    void set(qsizetype index, Extent extent);

    Place placeAt(double y) const;
    // From its top, once it has been measured: the same share of what the estimate really comes to.
    double offsetOf(Place const& place) const;

    // Calls work(index, y) for what lies from top to bottom, at least for one; work may set its height.
    template<typename Work>
    Span layOut(double top, double bottom, Work work);
    // Calls visit(index, y) from the first on while y, counted from `origin`, is above the bottom and visit says true.
    template<typename Visit>
    void forEach(qsizetype first, double origin, double bottom, Visit visit) const;
    // Calls measure(index) for what is inexact, at least for one, until the time is over or measure says that there is
    // more of it. True when there is more.
    template<typename Measure>
    bool makeSomeExact(QDeadlineTimer const& deadline, Measure measure);

private:
    HeightTree m_heights;
    std::vector<bool> m_exact;
    qsizetype m_inexact = 0;
    qsizetype m_next = 0; // nothing before it is inexact
};

template<typename Work>
HeightStack::Span HeightStack::layOut(double top, double bottom, Work work)
{
    auto const first = indexAt(top);
    auto index = first;
    for (auto y = this->top(first); index < size() && (y < bottom || index == first); ++index) {
        work(index, y);
        y += height(index);
    }
    return { first, index };
}

template<typename Visit>
void HeightStack::forEach(qsizetype first, double origin, double bottom, Visit visit) const
{
    auto index = first;
    for (auto y = origin + top(first); index < size() && y < bottom && visit(index, y); ++index)
        y += height(index);
}

template<typename Measure>
bool HeightStack::makeSomeExact(QDeadlineTimer const& deadline, Measure measure)
{
    for (; m_next < size(); ++m_next) {
        if (isExact(m_next))
            continue;
        if (measure(m_next))
            return true;
        if (deadline.hasExpired())
            return !isExact();
    }
    return false;
}

}
