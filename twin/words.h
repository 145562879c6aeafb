#pragma once

#include <string>

#include "twin/twins.h"

// What is said of a Terminal's model, in German. UTF-8.

namespace kelvo {

/// "das Terminal noch nicht geantwortet hat": what follows "weil".
std::string DoubtWords(const Knowledge& knowledge);
/// What brings certainty back, a sentence.
std::string RemedyWords(const Knowledge& knowledge);
/// What the picture rests on, or why it is not known and what brings certainty; `clock` writes a
/// time of the day.
std::string TwinWords(const Twin& twin, std::string (*clock)(WallTime time));

}  // namespace kelvo
