#pragma once

#include <ostream>
#include <string>

namespace kelvo::cli {

/// One line on the terminal that says how far the work is; nothing where there is no terminal.
class Progress {
 public:
  /// `width`: the terminal's columns, 0 for none.
  Progress(std::ostream& err, int width) : err_(err), width_(width) {}
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Replaces what stands there. UTF-8.
  void Show(std::string text);
  /// Before anything else is written.
  void Clear();

 private:
  std::ostream& err_;
  int width_;
  bool shown_ = false;
};

}  // namespace kelvo::cli
