#pragma once

#include <string>

#include "graphics/counting.h"
#include "graphics/drawing.h"

namespace kelvo {

/// What an object is and where, in German, UTF-8: "Rechteck 10,20 – 60,40", "Text „Halle“ 0,8".
std::string NameOf(const DrawingObject& object, const Counting& counting);

}  // namespace kelvo
