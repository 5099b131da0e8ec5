#pragma once

#include "Summons.h"

namespace Quillory {

// How long the program takes from its start until it holds its shortcut, each of `times` starts; it is ended in order
// after each. No other one may run. A failure is a sentence.
std::expected<std::vector<Summons::Milliseconds>, QString> timeStarts(
    Summons& summons, QString const& program, int times);

}
