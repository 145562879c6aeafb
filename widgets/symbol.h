#pragma once

#include <QIcon>

namespace kelvo {

/// What a button or a menu entry does, as a small drawing.
enum class Symbol {
  Restart,
  BitmapToEEprom,
  SaveAsText,
  New,
  Load,
  Save,
  Send,
  SaveAsMakro,
  Delete,
  First,
  Previous,
  Next,
  Last,
  Undo,
  Redo,
  Group,
  Grid,
  Snap,
  Picture,
  Select,
  Line,
  Rectangle,
  Ellipse,
  RoundedRectangle,
  Arc,
  Polyline,
  Pencil,
  Eraser,
  Letter,
  Fill,
  Danger,
};

/// Drawn anew at each size and in the palette's present colours, so that it is sharp on every
/// screen and seen in a light theme as in a dark one.
QIcon SymbolIcon(Symbol symbol);

}  // namespace kelvo
