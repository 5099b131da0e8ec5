#include "platform/ModifierNames.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace Quillory::ModifierNames {

namespace {

struct Row {
    ModifierFlags flag;
    QLatin1StringView name;
    QLatin1StringView otherName;
};

constexpr std::array<Row, 4> table { {
    { ModifierFlags::control, QLatin1StringView("ctrl"), QLatin1StringView("control") },
    { ModifierFlags::option, QLatin1StringView("alt"), QLatin1StringView("option") },
    { ModifierFlags::shift, QLatin1StringView("shift"), QLatin1StringView("shift") },
    { ModifierFlags::command, QLatin1StringView("super"), QLatin1StringView("command") },
} };

}

std::optional<ModifierFlags> read(QStringView text)
{
    auto modifiers = ModifierFlags::none;
    for (auto const part : text.split(u'+')) {
        auto const row = std::ranges::find_if(table, [&](Row const& known) {
            return part.compare(known.name, Qt::CaseInsensitive) == 0
                || part.compare(known.otherName, Qt::CaseInsensitive) == 0;
        });
        if (row == table.end())
            return std::nullopt;
        modifiers = modifiers | row->flag;
    }
    return modifiers;
}

QString write(ModifierFlags modifiers)
{
    QStringList names;
    for (auto const& row : table) {
        if (contains(modifiers, row.flag))
            names << row.name;
    }
    return names.join(u'+');
}

}
