#include "library/SheetNames.h"

#include "text/FileNames.h"
#include "text/TextOrder.h"

namespace Quillory {

namespace {

QString itself(QString const& text)
{
    return text;
}

QString withoutCase(QString const& text)
{
    return canonicalForm(canonicalForm(text).toCaseFolded());
}

QString idOf(Sheet const& sheet)
{
    return sheet.id;
}

QString fileNameOf(Sheet const& sheet)
{
    auto const stem = pathStem(sheet.id);
    bool const isStructured = pathExtension(stem).compare(QLatin1StringView("quillory"), Qt::CaseInsensitive) == 0;
    return (isStructured ? pathStem(stem) : stem).toString();
}

QString titleOf(Sheet const& sheet)
{
    return sheet.title;
}

}

QStringList idsOfSheetsCalled(QString const& name, QList<Sheet> const& sheets)
{
    for (auto const form : { itself, withoutCase }) {
        for (auto const nameOf : { idOf, fileNameOf, titleOf }) {
            QStringList ids;
            for (auto const& sheet : sheets) {
                if (form(nameOf(sheet)) == form(name))
                    ids << sheet.id;
            }
            if (!ids.isEmpty())
                return ids;
        }
    }
    return {};
}

}
