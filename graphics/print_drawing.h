#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

class QPainter;
class QPrinter;

namespace kelvo {

/// What stands on the page: the display's pixels, black and white, and the drawing's name.
struct PrintedDrawing {
  QImage pixels;
  QString name;
};

/// Fills a page, in units of the painter, with a drawing: every pixel a sharp square of a whole
/// number of units, as large as they fit, and below them the name and the size in millimetres.
void PaintPage(QPainter& painter, const QRectF& page, double unitsPerMm,
               const PrintedDrawing& drawing);

/// Prints it on one page; false when the printer cannot be used.
bool PrintDrawing(QPrinter& printer, const PrintedDrawing& drawing);

}  // namespace kelvo
