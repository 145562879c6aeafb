#include "sheet_page/sheet_layout.h"

#include <QTextLayout>
#include <algorithm>
#include <numeric>

#include "graphics/pixel_image.h"
#include "widgets/texts.h"

namespace kelvo {
namespace {

constexpr double kWidth = kSheetRight - kSheetLeft;
constexpr double kGap = 2 * kUnitsPerMm;        // below a block
constexpr double kPadding = 1 * kUnitsPerMm;    // of a cell, left and right
constexpr double kCellGap = 0.6 * kUnitsPerMm;  // of a cell, above and below
constexpr double kFirstRow = 12 * kUnitsPerMm;  // of a table: its head and one row
constexpr double kGridTitle = 20 * kUnitsPerMm;
constexpr double kGridCell = 9.5 * kUnitsPerMm;  // high
constexpr double kDot = 0.3 * kUnitsPerMm;       // of a display's picture, where it fits
constexpr double kLargestDot = 1 * kUnitsPerMm;
constexpr double kSmallPicture = 60 * kUnitsPerMm;
constexpr double kHighestPicture = 150 * kUnitsPerMm;
constexpr double kIndent = 5 * kUnitsPerMm;   // of a chapter in the contents
constexpr double kNumber = 15 * kUnitsPerMm;  // of a page's number there
constexpr int kRowsAtOnce = 40;
constexpr int kShortText = 10;  // lines that stay together
constexpr double kSplitAbove = (kSheetBottom - kSheetTop) / 3;

std::vector<QFontMetricsF> AllMetrics() {
  std::vector<QFontMetricsF> metrics;
  for (std::size_t font = 0; font < kSheetFonts; ++font) {
    metrics.emplace_back(FontOf(static_cast<SheetFont>(font)));
  }
  return metrics;
}

SheetFont FontOfLevel(int level) {
  switch (level) {
    case 0:
      return SheetFont::Title;
    case 1:
      return SheetFont::Part;
    case 2:
      return SheetFont::Chapter;
    default:
      return SheetFont::Item;
  }
}

double SpaceAbove(int level) { return (level == 2 ? 5 : level == 3 ? 3 : 0) * kUnitsPerMm; }

SheetFont FontOfText(const SheetText& text) {
  return text.small ? SheetFont::Small : SheetFont::Plain;
}

QSizeF SizeOnPaper(const PixelMap& pixels) {
  const double usual = std::clamp(kSmallPicture / pixels.Width(), kDot, kLargestDot);
  const double dot = std::min({usual, kWidth / pixels.Width(), kHighestPicture / pixels.Height()});
  return {pixels.Width() * dot, pixels.Height() * dot};
}

// In the contents.
bool IsListed(const SheetHeading& heading) { return heading.level == 1 || heading.level == 2; }

}  // namespace

SheetLayout::SheetLayout(const Sheet& sheet) : sheet_(sheet), metrics_(AllMetrics()) {
  laid_.title = Text(sheet.title);
}

bool SheetLayout::Step() {
  while (part_ < sheet_.parts.size() && block_ >= Part().blocks.size()) {
    ++part_;
    block_ = 0;
  }
  if (part_ >= sheet_.parts.size()) {
    FillContents();
    return false;
  }
  if (block_ == 0 && row_ == 0) {
    chapter_.clear();
    NewPage();
  }
  const bool whole =
      std::visit([this](const auto& block) { return Place(block); }, Part().blocks[block_]);
  if (whole) NextBlock();
  return true;
}

void SheetLayout::NextBlock() {
  ++block_;
  row_ = 0;
}

double SheetLayout::LineOf(SheetFont font) const {
  return metrics_[static_cast<std::size_t>(font)].height() * 1.08;
}

void SheetLayout::NewPage() {
  laid_.pages.push_back({Text(Part().name), chapter_, {}, {}, {}});
  y_ = kSheetTop;
  fresh_ = true;
}

void SheetLayout::Need(double height) {
  if (height > Left() && !fresh_) NewPage();
}

QStringList SheetLayout::Wrapped(const QString& text, SheetFont font, double width) const {
  const QFontMetricsF& metrics = metrics_[static_cast<std::size_t>(font)];
  if (text.isEmpty() || metrics.horizontalAdvance(text) <= width) return {text};
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  QTextLayout layout(text, FontOf(font));
  layout.setTextOption(option);
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines << text.mid(line.textStart(), line.textLength());
  }
  layout.endLayout();
  return lines;
}

void SheetLayout::PutText(double x, double base, const QString& text, SheetFont font) {
  Page().texts.push_back({{x, base}, text, font});
  fresh_ = false;
}

void SheetLayout::PutLines(const QStringList& lines, SheetFont font, double indent) {
  const double height = LineOf(font);
  const double ascent = metrics_[static_cast<std::size_t>(font)].ascent();
  for (const QString& line : lines) {
    Need(height);
    PutText(kSheetLeft + indent, y_ + ascent, line, font);
    y_ += height;
  }
}

// A heading and what it rests on stay with the beginning of what they are about.
double SheetLayout::NeededFrom(std::size_t block) const {
  double needed = 0;
  for (; block < Part().blocks.size(); ++block) {
    const SheetBlock& some = Part().blocks[block];
    needed += HeightOf(some);
    const auto* text = std::get_if<SheetText>(&some);
    const bool leads = std::holds_alternative<SheetHeading>(some) || (text && text->small);
    if (!leads) break;
  }
  return std::min(needed, kSheetBottom - kSheetTop);
}

double SheetLayout::HeightOf(const SheetBlock& block) const {
  if (const auto* heading = std::get_if<SheetHeading>(&block)) {
    return SpaceAbove(heading->level) + 2 * LineOf(FontOfLevel(heading->level));
  }
  if (const auto* text = std::get_if<SheetText>(&block)) return LineOf(FontOfText(*text)) + kGap;
  if (const auto* grid = std::get_if<SheetGrid>(&block)) {
    return static_cast<double>(grid->rows.size() + 1) * kGridCell + kGap;
  }
  if (const auto* picture = std::get_if<SheetPicture>(&block)) {
    return SizeOnPaper(picture->pixels).height() + 2 * LineOf(SheetFont::Small) + 2 * kGap;
  }
  return kFirstRow;
}

bool SheetLayout::Place(const SheetHeading& heading) {
  const SheetFont font = FontOfLevel(heading.level);
  if (heading.level == 2) chapter_ = Text(heading.text);
  Need(NeededFrom(block_));
  if (fresh_ && heading.level == 2) Page().chapter = chapter_;
  if (!fresh_) y_ += SpaceAbove(heading.level);
  if (IsListed(heading)) headings_.push_back(laid_.pages.size());
  PutLines(Wrapped(Text(heading.text), font, kWidth), font);
  y_ += kGap / 2;
  return true;
}

bool SheetLayout::Place(const SheetText& text) {
  const SheetFont font = FontOfText(text);
  const QStringList lines = Wrapped(Text(text.text), font, kWidth);
  if (lines.size() <= kShortText) Need(static_cast<double>(lines.size()) * LineOf(font));
  PutLines(lines, font);
  y_ += kGap / 2;
  return true;
}

bool SheetLayout::Place(const SheetPicture& picture) {
  const QSizeF size = SizeOnPaper(picture.pixels);
  y_ += kGap / 2;
  Need(size.height() + LineOf(SheetFont::Small) + kGap);
  Page().pictures.push_back({QRectF({kSheetLeft, y_}, size),
                             ToImage(picture.pixels).convertToFormat(QImage::Format_Mono)});
  fresh_ = false;
  y_ += size.height() + kGap / 2;
  PutLines(Wrapped(Text(picture.caption), SheetFont::Small, kWidth), SheetFont::Small);
  y_ += kGap / 2;
  return true;
}

// ---- tables ----

std::vector<double> SheetLayout::Widths(const SheetTable& table) const {
  const int shares =
      std::accumulate(table.columns.begin(), table.columns.end(), 0,
                      [](int sum, const SheetColumn& column) { return sum + column.share; });
  std::vector<double> widths;
  for (const SheetColumn& column : table.columns) widths.push_back(kWidth * column.share / shares);
  return widths;
}

void SheetLayout::PutHead(const SheetTable& table, const std::vector<double>& widths) {
  double x = kSheetLeft;
  const double base = y_ + metrics_[static_cast<std::size_t>(SheetFont::SmallBold)].ascent();
  for (std::size_t column = 0; column < widths.size(); ++column) {
    PutText(x + kPadding, base, Text(table.columns[column].title), SheetFont::SmallBold);
    x += widths[column];
  }
  y_ += LineOf(SheetFont::SmallBold) + kCellGap;
  Page().rules.emplace_back(kSheetLeft, y_, kSheetRight, y_);
}

bool SheetLayout::Place(const SheetTable& table) {
  const std::vector<double> widths = Widths(table);
  if (row_ == 0) {
    Need(kFirstRow);
    PutHead(table, widths);
  }
  for (int i = 0; i < kRowsAtOnce && row_ < table.rows.size(); ++i) {
    PutRow(table, widths, table.rows[row_++]);
  }
  if (row_ < table.rows.size()) return false;
  y_ += kGap;
  return true;
}

// A row goes over to the next page as a whole, but for one that fills much of it.
void SheetLayout::PutRow(const SheetTable& table, const std::vector<double>& widths,
                         const std::vector<std::string>& row) {
  CellLines cells;
  int lines = 1;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    const SheetFont font = table.columns[column].wire ? SheetFont::Wire : SheetFont::Cell;
    cells.push_back(Wrapped(Text(row[column]), font, widths[column] - 2 * kPadding));
    lines = std::max(lines, static_cast<int>(cells.back().size()));
  }
  const double line = LineOf(SheetFont::Cell);
  int from = 0;
  while (from < lines) {
    const double height = (lines - from) * line + 2 * kCellGap;
    if (height > Left() && (height <= kSplitAbove || Left() < 3 * line)) {
      NewPage();
      PutHead(table, widths);
    }
    const int fit = std::max(1, static_cast<int>((Left() - 2 * kCellGap) / line));
    const int to = std::min(lines, from + fit);
    PutCells(table, widths, cells, from, to);
    from = to;
  }
}

void SheetLayout::PutCells(const SheetTable& table, const std::vector<double>& widths,
                           const CellLines& cells, int from, int to) {
  const double line = LineOf(SheetFont::Cell);
  const double first = y_ + kCellGap + metrics_[static_cast<std::size_t>(SheetFont::Cell)].ascent();
  double x = kSheetLeft;
  for (std::size_t column = 0; column < cells.size(); ++column) {
    const SheetFont font = table.columns[column].wire ? SheetFont::Wire : SheetFont::Cell;
    const int end = std::min(to, static_cast<int>(cells[column].size()));
    for (int i = from; i < end; ++i) {
      PutText(x + kPadding, first + (i - from) * line, cells[column][i], font);
    }
    x += widths[column];
  }
  y_ += (to - from) * line + 2 * kCellGap;
  Page().rules.emplace_back(kSheetLeft, y_, kSheetRight, y_);
}

// ---- keypads ----

bool SheetLayout::Place(const SheetGrid& grid) {
  Need(static_cast<double>(grid.rows.size() + 1) * kGridCell);
  PutGridRow({}, grid.columns, true);
  for (const auto& [title, cells] : grid.rows) PutGridRow(title, cells, false);
  y_ += kGap;
  return true;
}

void SheetLayout::PutGridRow(const SheetGrid::Cell& title,
                             const std::vector<SheetGrid::Cell>& cells, bool head) {
  if (head) Page().rules.emplace_back(kSheetLeft, y_, kSheetRight, y_);
  PutGridCell(title, {kSheetLeft, y_, kGridTitle, kGridCell}, true);
  const double width = (kWidth - kGridTitle) / static_cast<double>(cells.size());
  double x = kSheetLeft + kGridTitle;
  for (const SheetGrid::Cell& cell : cells) {
    PutGridCell(cell, {x, y_, width, kGridCell}, head);
    x += width;
  }
  y_ += kGridCell;
  Page().rules.emplace_back(kSheetLeft, y_, kSheetRight, y_);
}

void SheetLayout::PutGridCell(const SheetGrid::Cell& cell, QRectF place, bool title) {
  Page().rules.emplace_back(place.topLeft(), place.bottomLeft());
  Page().rules.emplace_back(place.topRight(), place.bottomRight());
  SheetFont font = title ? SheetFont::SmallBold : SheetFont::Sign;
  const double width = place.width() - kPadding;
  const QString sign = Text(cell.sign);
  const auto advance = [this](const QString& text, SheetFont some) {
    return metrics_[static_cast<std::size_t>(some)].horizontalAdvance(text);
  };
  if (advance(sign, font) > width) font = SheetFont::Code;
  std::vector<std::pair<QString, SheetFont>> lines;
  for (const QString& line : Wrapped(sign, font, width)) lines.emplace_back(line.trimmed(), font);
  if (!cell.code.empty()) lines.emplace_back(Text(cell.code), SheetFont::Code);
  double height = 0;
  for (const auto& [text, some] : lines) height += LineOf(some);
  double y = place.center().y() - height / 2;
  for (const auto& [text, some] : lines) {
    const double base = y + metrics_[static_cast<std::size_t>(some)].ascent();
    PutText(place.center().x() - advance(text, some) / 2, base, text, some);
    y += LineOf(some);
  }
}

// ---- contents ----

bool SheetLayout::Place(const SheetContents&) {
  y_ += kGap;
  Need(kFirstRow);
  PutLines({QStringLiteral("Inhalt")}, SheetFont::Chapter);
  y_ += kGap / 2;
  for (const SheetPart& part : sheet_.parts) {
    for (const SheetBlock& block : part.blocks) {
      const auto* heading = std::get_if<SheetHeading>(&block);
      if (heading != nullptr && IsListed(*heading)) PlaceEntry(*heading);
    }
  }
  return true;
}

void SheetLayout::PlaceEntry(const SheetHeading& heading) {
  const double indent = heading.level == 2 ? kIndent : 0;
  const double width = kWidth - indent - kNumber;
  const QString text = metrics_[static_cast<std::size_t>(SheetFont::Plain)].elidedText(
      Text(heading.text), Qt::ElideMiddle, width);
  Need(LineOf(SheetFont::Plain));
  const double base = y_ + metrics_[static_cast<std::size_t>(SheetFont::Plain)].ascent();
  PutText(kSheetLeft + indent, base, text, SheetFont::Plain);
  references_.push_back({laid_.pages.size() - 1, Page().texts.size()});
  PutText(kSheetRight, base, {}, SheetFont::Plain);
  y_ += LineOf(SheetFont::Plain);
}

void SheetLayout::FillContents() {
  for (std::size_t i = 0; i < references_.size() && i < headings_.size(); ++i) {
    SheetPage::Text& number = laid_.pages[references_[i].page].texts[references_[i].text];
    number.text = QString::number(headings_[i]);
    const QFontMetricsF& metrics = metrics_[static_cast<std::size_t>(number.font)];
    number.at.setX(kSheetRight - metrics.horizontalAdvance(number.text));
  }
}

}  // namespace kelvo
