#pragma once

#include "rendering/AttributedText.h"
#include "text/TextRange.h"

#include <QMimeData>

namespace Quillory {

// Selected text as plain text, cut out of the whole only when it is asked for. Pictures and the gaps beside them leave
// nothing. Tabs stand between the cells of a table's row, as spreadsheets take them.
class SelectionData : public QMimeData {
    Q_OBJECT
public:
    SelectionData(AttributedText text, TextRange range);

    QStringList formats() const override;
    bool hasFormat(QString const& type) const override;

protected:
    QVariant retrieveData(QString const& type, QMetaType preferredType) const override;

private:
    AttributedText m_text;
    TextRange m_range;
};

}
