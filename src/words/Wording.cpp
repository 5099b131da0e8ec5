#include "words/Wording.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

namespace Quillory {

Wording::Wording(QByteArray const& json)
{
    auto const object = QJsonDocument::fromJson(json).object();
    for (auto pair = object.begin(); pair != object.end(); ++pair) {
        auto const forms = pair->isArray() ? pair->toArray() : QJsonArray { *pair };
        m_pairs.insert(pair.key(), QVariant(forms.toVariantList()).toStringList());
    }
}

QString Wording::translate(char const*, char const* sourceText, char const*, int n) const
{
    auto const forms = m_pairs.value(QString::fromUtf8(sourceText));
    if (forms.isEmpty())
        return {};
    return n == 1 ? forms.first() : forms.last();
}

}
