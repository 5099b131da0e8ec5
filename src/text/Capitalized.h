#pragma once

#include <QString>

namespace Quillory {

// Each word with its first letter in title case and the rest lowered. Blanks and hyphens separate words, points don't.
QString capitalized(QString const& text);

}
