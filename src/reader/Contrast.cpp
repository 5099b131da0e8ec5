#include "reader/Contrast.h"

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

double linear(float channel)
{
    auto const value = static_cast<double>(channel);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(QColor const& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}

double contrast(QColor const& one, QColor const& other)
{
    auto const [dark, light] = std::minmax({ luminance(one), luminance(other) });
    return (light + 0.05) / (dark + 0.05);
}

}
