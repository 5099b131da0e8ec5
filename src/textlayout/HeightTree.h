#pragma once

#include <QtGlobal>

#include <vector>

namespace Quillory {

// The heights of things stacked on one another: sums, changes and look-ups by position cost the logarithm of their
// number. Doubles throughout, since a long text is tens of millions of points high.
class HeightTree {
public:
    HeightTree() = default;
    explicit HeightTree(std::vector<double> heights);

    void set(qsizetype index, double height);

    qsizetype size() const { return static_cast<qsizetype>(m_sums.size()); }
    double height(qsizetype index) const;
    // The sum of the heights before `index`, which may be size().
    double top(qsizetype index) const;
    double total() const { return top(size()); }
    // The index whose extent holds y, the first one for what lies above, the last one for what lies below. -1 when empty.
    qsizetype indexAt(double y) const;

private:
    std::vector<double> m_sums; // a Fenwick tree; position i stands for i + 1
};

}
