#pragma once

#include <QStringView>

#include <vector>

namespace Quillory {

// Leads between positions in a text's UTF-16 units and positions in its Unicode scalars, as others count them. Holds the
// places of the pairs of surrogates alone; a position inside a pair is that of the pair.
class ScalarOffsets {
public:
    ScalarOffsets() = default;
    explicit ScalarOffsets(QStringView text);

    qsizetype scalarAt(qsizetype unit) const;
    qsizetype unitAt(qsizetype scalar) const;

private:
    struct Pair {
        qsizetype unit = 0;
        qsizetype scalar = 0;
    };

    std::vector<Pair> m_pairs; // where they begin, in order
};

}
