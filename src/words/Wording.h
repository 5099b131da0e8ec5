#pragma once

#include <QTranslator>

#include <QByteArray>
#include <QHash>
#include <QStringList>

namespace Quillory {

// A wording for this desktop over the texts of the source: pairs of texts, whatever the context, for those alone that
// would be wrong here. Main thread only.
class Wording final : public QTranslator {
public:
    // Of a JSON object: the source text to its wording, or to two of them, for one and for several.
    explicit Wording(QByteArray const& json);

    // `n` is a count, or negative. Null for a text without a wording.
    QString translate(
        char const* context, char const* sourceText, char const* disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return m_pairs.isEmpty(); }

    QHash<QString, QStringList> const& pairs() const { return m_pairs; }

private:
    QHash<QString, QStringList> m_pairs;
};

}
