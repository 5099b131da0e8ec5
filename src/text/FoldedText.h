#pragma once

#include "text/TextRange.h"

#include <QString>

#include <optional>
#include <vector>

namespace Quillory {

// A text in its form for search, with the way back to the positions of the original. Made step by step, since a long text
// takes some milliseconds. Positions count UTF-16 units.
class FoldedText {
public:
    enum class Direction { forwards, backwards };

    FoldedText() = default;
    explicit FoldedText(QString text);

    bool isComplete() const { return m_read == m_text.size(); }
    // Folds about so many units more.
    void foldSome(qsizetype units);

    // The first or last match that lies between two positions of the original, in whole clusters, as a person would select
    // it. Folds first what is not folded yet.
    // `query` is folded already; an empty one is nowhere.
    std::optional<TextRange> find(QString const& query, qsizetype from, qsizetype to, Direction direction);

private:
    // A stretch in which positions run side by side, or one cluster that can only be taken whole.
    struct Stretch {
        enum class Kind : quint8 { aligned, cluster };
        quint32 folded = 0;
        quint32 source = 0;
        Kind kind = Kind::aligned;
    };

    void begin(Stretch::Kind kind, qsizetype source);
    void foldAligned(qsizetype end);
    bool foldAscii(qsizetype end);
    void foldClusters(qsizetype end);
    void foldCluster(qsizetype end);
    qsizetype sourceEnd(std::size_t stretch) const;
    qsizetype foldedPosition(qsizetype source, Direction roundedTo) const;
    TextRange original(qsizetype folded, qsizetype length) const;

    QString m_text;
    QString m_folded;
    std::vector<Stretch> m_stretches;
    qsizetype m_read = 0;
};

}
