#pragma once

#include <QImage>
#include <QString>
#include <optional>
#include <string>

#include "graphics/drawing.h"
#include "graphics/pixel_map.h"

// Between Qt's pictures and the drawing's.

namespace kelvo {

/// Set pixels black, the others white.
QImage ToImage(const PixelMap& map);
QImage ToImage(const Picture& picture);
/// What is transparent becomes white.
Picture ToPicture(const QImage& image);

/// A text as it goes on the wire: Latin-1 without control characters. Nothing for any other text.
std::optional<std::string> ToWireText(const QString& text);

/// A text of another program with what it has set in finer type in plain characters: quotes,
/// dashes, the ellipsis, special blanks; a tab becomes blanks.
QString PlainForms(QString text);
/// The first character that no font has; empty when all are there.
QString FirstForeign(const QString& text);

}  // namespace kelvo
