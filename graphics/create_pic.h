#pragma once

#include "graphics/create_bitmap.h"

namespace kelvo {

/// The drawing as one string of the Terminal's commands. A level that leaves the 16-bit range gives
/// "Überlauf / CreatePic" and is left out whole: the drawing becomes the empty string, a group
/// contributes nothing. Only the former counts as failed.
Translation CreatePic(const Drawing& drawing, TerminalTraits& terminal);

}  // namespace kelvo
