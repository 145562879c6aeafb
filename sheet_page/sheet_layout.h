#pragma once

#include <QFontMetricsF>
#include <QStringList>
#include <vector>

#include "sheet/sheet.h"
#include "sheet_page/sheet_painter.h"

namespace kelvo {

/// Lays a sheet out on pages, a little with each step.
class SheetLayout {
 public:
  /// The sheet must outlive it.
  explicit SheetLayout(const Sheet& sheet);

  /// False when all is laid out.
  bool Step();
  const SheetPages& Laid() const { return laid_; }

 private:
  /// A page number in the contents that is known only at the end.
  struct Reference {
    std::size_t page;
    std::size_t text;
  };
  /// A row of a table, its cells in lines.
  using CellLines = std::vector<QStringList>;

  const SheetPart& Part() const { return sheet_.parts[part_]; }
  SheetPage& Page() { return laid_.pages.back(); }
  double Left() const { return kSheetBottom - y_; }
  double LineOf(SheetFont font) const;
  void NextBlock();
  void NewPage();
  /// Goes on to the next page where there is less room.
  void Need(double height);
  double NeededFrom(std::size_t block) const;
  double HeightOf(const SheetBlock& block) const;
  QStringList Wrapped(const QString& text, SheetFont font, double width) const;
  void PutText(double x, double base, const QString& text, SheetFont font);
  void PutLines(const QStringList& lines, SheetFont font, double indent = 0);

  bool Place(const SheetHeading& heading);
  bool Place(const SheetText& text);
  bool Place(const SheetTable& table);
  bool Place(const SheetGrid& grid);
  bool Place(const SheetPicture& picture);
  bool Place(const SheetContents&);
  void PlaceEntry(const SheetHeading& heading);

  std::vector<double> Widths(const SheetTable& table) const;
  void PutHead(const SheetTable& table, const std::vector<double>& widths);
  void PutRow(const SheetTable& table, const std::vector<double>& widths,
              const std::vector<std::string>& row);
  void PutCells(const SheetTable& table, const std::vector<double>& widths, const CellLines& cells,
                int from, int to);
  void PutGridRow(const SheetGrid::Cell& title, const std::vector<SheetGrid::Cell>& cells,
                  bool head);
  void PutGridCell(const SheetGrid::Cell& cell, QRectF place, bool title);
  void FillContents();

  const Sheet& sheet_;
  const std::vector<QFontMetricsF> metrics_;  // by SheetFont
  SheetPages laid_;
  std::size_t part_ = 0;
  std::size_t block_ = 0;
  std::size_t row_ = 0;  // of the table that is being laid out
  double y_ = kSheetBottom;
  QString chapter_;
  bool fresh_ = false;  // nothing stands on the page
  std::vector<Reference> references_;
  std::vector<std::size_t> headings_;  // their pages, in the contents' order
};

}  // namespace kelvo
