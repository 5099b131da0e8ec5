#pragma once

#include "library/Interpretation.h"
#include "library/KeyNames.h"

#include <QList>
#include <QString>

#include <utility>

namespace Quillory {

// Tells what a text view shows: two documents with equal keys show the same text.
struct DocumentKey {
    QString id; // of the sheet
    QString source;
    QList<std::pair<QString, quint64>> images; // reference and fingerprint, in the order of the references
    double textSize = 0;
    KeyNames keyNames = KeyNames::symbols; // of a structured sheet
    Interpretation interpretation = Interpretation::complete;

    bool operator==(DocumentKey const&) const = default;
};

}
