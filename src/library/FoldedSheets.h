#pragma once

#include "library/Sheet.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace Quillory {

// What the library search looks at: the title, the id and the text of each sheet, in their form for search, one after the
// other. In any writing of daily use at most 1.1 bytes a byte of these, and eight bytes a sheet. Never changes once made.
class FoldedSheets {
public:
    using Positions = std::vector<qsizetype>;

    // Takes over from `earlier`, which may be null, what it holds of the same texts. Takes a tenth of a second for some
    // millions of characters: for a worker. Null when it was asked to end.
    static std::shared_ptr<FoldedSheets const> of(
        QList<Sheet> sheets, std::shared_ptr<FoldedSheets const> const& earlier = {}, std::stop_token const& end = {});

    QList<Sheet> const& sheets() const { return m_sheets; }

    // The positions of the sheets that hold the query's bytes, in order: of all, or of those looked at.
    Positions holding(QByteArrayView query) const;
    Positions holding(QByteArrayView query, Positions const& among) const;

    // What is kept next to the sheets.
    qsizetype byteSize() const;

private:
    QByteArrayView bytesOf(qsizetype sheet) const;

    QList<Sheet> m_sheets;
    QByteArray m_bytes;
    std::vector<qsizetype> m_ends; // of each sheet in the bytes
};

}
