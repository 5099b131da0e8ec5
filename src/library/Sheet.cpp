#include "library/Sheet.h"

#include "text/TextOrder.h"

#include <algorithm>

namespace Quillory {

namespace {

bool sameText(QString const& a, QString const& b)
{
    return (a.isSharedWith(b) && a.size() == b.size()) || a == b;
}

bool sameImages(QMap<QString, PreparedImage> const& a, QMap<QString, PreparedImage> const& b)
{
    if (a.size() != b.size())
        return false;
    QMap<QString, PreparedImage> canonical;
    for (auto const& [reference, image] : b.asKeyValueRange())
        canonical.insert(canonicalForm(reference), image);
    return std::ranges::all_of(a.asKeyValueRange(), [&](auto const& entry) {
        auto const other = canonical.constFind(canonicalForm(entry.first));
        return other != canonical.cend() && *other == entry.second;
    });
}

// Of sheets with the same text. What a text was made to follows from it, so that the trees of thousands of sheets, loaded
// twice at the same time, don't hold the main thread. A sheet without a text has next to none.
template<typename Made>
bool sameMade(QString const& source, std::optional<Made> const& a, std::optional<Made> const& b)
{
    return a.has_value() == b.has_value() && (!a || !source.isEmpty() || *a == *b);
}

}

bool Sheet::operator==(Sheet const& other) const
{
    return canonicallyEqual(id, other.id) && canonicallyEqual(title, other.title) && sameText(source, other.source)
        && error == other.error && interpretation == other.interpretation && sameMade(source, parsed, other.parsed)
        && sameImages(images, other.images) && sameMade(source, shortcuts, other.shortcuts)
        && iconWarnings == other.iconWarnings;
}

Sheet const* findSheet(QList<Sheet> const& sheets, QString const& id)
{
    auto const exact = std::ranges::find(sheets, id, &Sheet::id);
    if (exact != sheets.cend())
        return &*exact;
    auto const canonical = std::ranges::find_if(
        sheets, [&](Sheet const& sheet) { return canonicallyEqual(sheet.id, id); });
    return canonical != sheets.cend() ? &*canonical : nullptr;
}

}
