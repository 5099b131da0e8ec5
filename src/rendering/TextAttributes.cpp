#include "rendering/TextAttributes.h"

#include <QHashFunctions>

namespace Quillory {

std::size_t qHash(TextAttributes const& attributes, std::size_t seed) noexcept
{
    // The rest differs rarely between attributes that agree in these.
    return qHashMulti(seed, attributes.font.size, static_cast<int>(attributes.font.weight),
        static_cast<int>(attributes.font.family), attributes.font.italic, attributes.link,
        attributes.background.has_value(), attributes.strikethrough);
}

}
