#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "graphics/device_font.h"
#include "graphics/pixel_map.h"
#include "simulator/terminal.h"

namespace kelvo {

/// Where a preview begins, and what it knows.
struct PreviewStart {
  int width = 240;  ///< pixels; an empty display of this size, as after switching on
  int height = 128;
  const sim::Terminal* state = nullptr;  ///< begins as this one is, in place of the empty display
  /// The text of the recorded macro of a number; what it does not know is looked for in the state.
  std::function<std::optional<std::string>(int number)> makro{};
  int baud = 9600;  ///< bits a second on the line
};

/// What a text has done.
struct PreviewResult {
  PixelMap picture;            ///< without the cursor
  PixelMap withCursor;         ///< with the cursor, which blinks or not
  std::size_t characters = 0;  ///< of the text
  std::chrono::nanoseconds lineTime{0};
  std::vector<int> called;   ///< the macros that have been called, each once
  std::vector<int> unknown;  ///< those of them whose text is not known
  bool restarts = false;     ///< the rest of the text is not reached, macro 0 comes in its place
  bool neverEnds = false;    ///< macros run each other in a circle
  bool handsOver = false;    ///< selects another Terminal and does not listen any more
  bool speaks = false;       ///< asks or writes something that is answered on the line

  bool CalledUnknown() const { return !unknown.empty(); }
};

/// Carries a macro's text out on a simulated Terminal.
class Preview {
 public:
  /// The fonts must outlive it.
  explicit Preview(const DeviceFonts& fonts) : fonts_(fonts) {}

  PreviewResult Run(const std::string& text, const PreviewStart& start) const;

 private:
  const DeviceFonts& fonts_;
};

}  // namespace kelvo
