#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include "graphics/device_font.h"
#include "sheet/sheet.h"
#include "sheet/sources.h"

namespace kelvo {

/// What a sheet can hold, in its order.
enum class SheetChapter : std::uint8_t {
  Interfaces,
  Matrix,
  At,
  Macros,
  Bitmaps,
  Eeprom,
  Readings,
  Drawings,
  Database,
  Characters,
};
inline constexpr SheetChapter kSheetChapters[] = {
    SheetChapter::Interfaces, SheetChapter::Matrix,   SheetChapter::At,
    SheetChapter::Macros,     SheetChapter::Bitmaps,  SheetChapter::Eeprom,
    SheetChapter::Readings,   SheetChapter::Drawings, SheetChapter::Database,
    SheetChapter::Characters};
/// Its title, German, UTF-8.
const char* ChapterTitle(SheetChapter chapter);

/// Makes a data sheet, a little with each step. The same sources give the same sheet.
class SheetMaker {
 public:
  /// The fonts must outlive it.
  SheetMaker(SheetSources sources, std::set<SheetChapter> chapters, const DeviceFonts& fonts);
  SheetMaker(const SheetMaker&) = delete;
  SheetMaker& operator=(const SheetMaker&) = delete;

  /// Makes the next piece; false when all is made.
  bool Step();
  std::size_t Steps() const { return steps_.size(); }
  std::size_t Done() const { return done_; }
  /// What is made so far.
  const Sheet& Made() const { return sheet_; }

 private:
  using Blocks = std::vector<SheetBlock>;

  bool Wanted(SheetChapter chapter) const { return chapters_.contains(chapter); }
  void Then(std::function<void()> step) { steps_.push_back(std::move(step)); }
  void Begin(std::string part);
  void Add(SheetBlock block) { sheet_.parts.back().blocks.push_back(std::move(block)); }
  void AddAll(Blocks blocks);

  void PlanOverview();
  void PlanTerminal(std::size_t index);
  void PlanItems(std::size_t index, SheetChapter chapter, ItemKind kind);
  void PlanRecords();
  void PlanCharacters();

  const SheetSources sources_;
  const std::set<SheetChapter> chapters_;
  const DeviceFonts& fonts_;
  std::vector<std::function<void()>> steps_;
  std::size_t done_ = 0;
  Sheet sheet_;
};

}  // namespace kelvo
