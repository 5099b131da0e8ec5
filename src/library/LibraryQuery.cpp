#include "library/LibraryQuery.h"

#include "text/Scalars.h"
#include "text/SearchBytes.h"

namespace Quillory {

LibraryQuery LibraryQuery::of(QStringView typed)
{
    while (!typed.isEmpty() && isWhiteSpace(typed.front().unicode()))
        typed = typed.sliced(1);
    while (!typed.isEmpty() && isWhiteSpace(typed.back().unicode()))
        typed.chop(1);
    return { typed.isEmpty() ? std::nullopt : std::optional(searchBytes(typed)) };
}

}
