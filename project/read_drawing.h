#pragma once

#include "project/node_reader.h"
#include "project/project.h"

namespace kelvo {

/// A drawing with its name and its objects. Throws NodeFault.
ProjectDrawing DrawingOf(const NodeReader& node);

}  // namespace kelvo
