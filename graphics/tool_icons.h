#pragma once

#include <QIcon>

#include "graphics/tool.h"

namespace kelvo {

/// A picture of what a tool draws, in the palette's colours.
QIcon ToolIcon(ToolKind kind);

}  // namespace kelvo
