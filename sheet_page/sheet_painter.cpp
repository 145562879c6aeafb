#include "sheet_page/sheet_painter.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>

namespace kelvo {
namespace {

constexpr double kMmPerPoint = 25.4 / 72;
constexpr double kHairline = 0.15 * kUnitsPerMm;
constexpr double kFrameGap = 0.7 * kUnitsPerMm;
constexpr double kHeadBase = 16 * kUnitsPerMm;  // base line of the name
constexpr double kHeadLine = 4.5 * kUnitsPerMm;
constexpr double kHeadRule = 22.5 * kUnitsPerMm;
constexpr double kFootRule = kPageHeight - 16 * kUnitsPerMm;
constexpr double kFootBase = kPageHeight - 12 * kUnitsPerMm;
constexpr double kFootNumber = 35 * kUnitsPerMm;

struct Look {
  double points;
  bool bold = false;
  bool wire = false;
};
constexpr Look kLooks[kSheetFonts] = {
    {17, true}, {14, true},  {11.5, true},       {9.5, true}, {9}, {8},
    {7.5},      {7.5, true}, {7.5, false, true}, {9.5, true}, {6}};

void DrawWithin(QPainter& painter, QPointF at, const QString& text, SheetFont font, double width) {
  const QFont look = FontOf(font);
  painter.setFont(look);
  painter.drawText(at, QFontMetricsF(look).elidedText(text, Qt::ElideMiddle, width));
}

void PaintFrame(QPainter& painter, const SheetPages& sheet, std::size_t index) {
  const SheetPage& page = sheet.pages[index];
  const double width = kSheetRight - kSheetLeft;
  DrawWithin(painter, {kSheetLeft, kHeadBase}, page.name, SheetFont::Item, width);
  DrawWithin(painter, {kSheetLeft, kHeadBase + kHeadLine}, page.chapter, SheetFont::Small, width);
  painter.drawLine(QLineF(kSheetLeft, kHeadRule, kSheetRight, kHeadRule));
  painter.drawLine(QLineF(kSheetLeft, kFootRule, kSheetRight, kFootRule));
  DrawWithin(painter, {kSheetLeft, kFootBase}, sheet.title, SheetFont::Small, width - kFootNumber);
  const QString number = QCoreApplication::translate("SheetPage", "Seite %1 von %2")
                             .arg(index + 1)
                             .arg(sheet.pages.size());
  const QFont small = FontOf(SheetFont::Small);
  const double from = kSheetRight - QFontMetricsF(small).horizontalAdvance(number);
  DrawWithin(painter, {from, kFootBase}, number, SheetFont::Small, kFootNumber);
}

}  // namespace

QFont FontOf(SheetFont font) {
  const Look& look = kLooks[static_cast<std::size_t>(font)];
  QFont made(look.wire ? QStringLiteral("DejaVu Sans Mono") : QStringLiteral("DejaVu Sans"));
  made.setStyleHint(look.wire ? QFont::Monospace : QFont::SansSerif);
  made.setPixelSize(static_cast<int>(look.points * kMmPerPoint * kUnitsPerMm));
  made.setBold(look.bold);
  made.setHintingPreference(QFont::PreferNoHinting);
  // With it no two letters become one sign, which nobody would find in the file's text.
  made.setLetterSpacing(QFont::AbsoluteSpacing, 0.05);
  return made;
}

void PaintSheetPage(QPainter& painter, const SheetPages& sheet, std::size_t index) {
  const SheetPage& page = sheet.pages[index];
  painter.setPen(QPen(Qt::black, kHairline));
  PaintFrame(painter, sheet, index);
  for (const QLineF& rule : page.rules) painter.drawLine(rule);
  for (const SheetPage::Picture& picture : page.pictures) {
    painter.drawImage(picture.place, picture.dots);
    // Apart from the dots, which may be a frame themselves.
    painter.drawRect(picture.place.adjusted(-kFrameGap, -kFrameGap, kFrameGap, kFrameGap));
  }
  for (const SheetPage::Text& text : page.texts) {
    painter.setFont(FontOf(text.font));
    painter.drawText(text.at, text.text);
  }
}

}  // namespace kelvo
