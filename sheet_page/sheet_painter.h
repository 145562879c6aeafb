#pragma once

#include <QFont>
#include <QImage>
#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <vector>

class QPainter;

namespace kelvo {

/// The unit of all lengths on a page.
inline constexpr double kUnitsPerMm = 20;
inline constexpr double kUnitsPerInch = 25.4 * kUnitsPerMm;
inline constexpr double kPageWidth = 210 * kUnitsPerMm;
inline constexpr double kPageHeight = 297 * kUnitsPerMm;

/// Where text may stand. The edge that is punched, on either side of the paper, stays free.
inline constexpr double kSheetLeft = 25 * kUnitsPerMm;
inline constexpr double kSheetRight = kPageWidth - 15 * kUnitsPerMm;
inline constexpr double kSheetTop = 27 * kUnitsPerMm;
inline constexpr double kSheetBottom = kPageHeight - 20 * kUnitsPerMm;

enum class SheetFont : std::uint8_t {
  Title,
  Part,
  Chapter,
  Item,
  Plain,
  Cell,
  Small,
  SmallBold,
  Wire,
  Sign,
  Code,
};
inline constexpr std::size_t kSheetFonts = 11;
/// Its size is in units.
QFont FontOf(SheetFont font);

/// What stands on a page, all of it with its place.
struct SheetPage {
  struct Text {
    QPointF at;  ///< the left end of its base line
    QString text;
    SheetFont font;
  };
  struct Picture {
    QRectF place;
    QImage dots;  ///< black and white
  };
  QString name;     ///< above the page
  QString chapter;  ///< below that
  std::vector<Text> texts;
  std::vector<QLineF> rules;
  std::vector<Picture> pictures;
};

struct SheetPages {
  QString title;
  std::vector<SheetPage> pages;
};

/// Draws one page, black on white, in units.
void PaintSheetPage(QPainter& painter, const SheetPages& sheet, std::size_t index);

}  // namespace kelvo
