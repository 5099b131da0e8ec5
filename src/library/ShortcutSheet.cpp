#include "library/ShortcutSheet.h"

#include "library/ShortcutSheetReader.h"
#include "library/ShortcutSheetValidation.h"

#include <QCoreApplication>

namespace Quillory {

std::expected<ShortcutSheet, ShortcutSheet::FormatError> ShortcutSheet::decode(QByteArrayView bytes)
{
    auto sheet = readShortcutSheet(bytes);
    if (!sheet)
        return sheet;
    if (auto error = findFormatError(*sheet))
        return std::unexpected(std::move(*error));
    return sheet;
}

QStringList ShortcutSheet::icons() const
{
    QStringList icons;
    if (icon)
        icons.append(*icon);
    for (auto const& section : sections) {
        if (section.icon)
            icons.append(*section.icon);
    }
    return icons;
}

bool ShortcutSheet::operator==(ShortcutSheet const& other) const = default;

QString ShortcutSheet::FormatError::description() const
{
    return QCoreApplication::translate("ShortcutSheet", "Invalid Quillory JSON \u2014 %1").arg(message);
}

}
