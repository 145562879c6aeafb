#pragma once

#include <string>

namespace kelvo {

/// A program that this one starts beside itself. It goes on when this one ends.
class SideProgram {
 public:
  virtual ~SideProgram() = default;

  /// Starts it; empty, or the reason why that failed (UTF-8).
  virtual std::string Start() = 0;
  /// Whether what was started still runs.
  virtual bool Running() const = 0;
  /// What it has written to its standard output.
  virtual std::string Said() const = 0;
  /// What it has written to its standard error.
  virtual std::string Complained() const = 0;
  /// Asks it to end, if it still runs; does not wait for that.
  virtual void End() = 0;
};

}  // namespace kelvo
