#include "cli/progress.h"

#include <utility>

#include "cli/table.h"

namespace kelvo::cli {
namespace {

constexpr char kClearLine[] = "\r\x1b[K";

// Never across the edge: what has wrapped cannot be taken back.
void Shorten(std::string& text, std::size_t width) {
  while (WidthOf(text) > width) text.pop_back();
}

}  // namespace

void Progress::Show(std::string text) {
  if (width_ <= 1) return;
  const auto room = static_cast<std::size_t>(width_ - 1);
  if (WidthOf(text) > room) Shorten(text, room);
  err_ << kClearLine << text << std::flush;
  shown_ = true;
}

void Progress::Clear() {
  if (std::exchange(shown_, false)) err_ << kClearLine << std::flush;
}

}  // namespace kelvo::cli
