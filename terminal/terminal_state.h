#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace kelvo {

/// Whether the Terminal has flash memory, as far as it is known. The numbers are those of the
/// program's own bookkeeping; 2 makes the status page ask again.
enum class FlashState { No = 0, Yes = 1, Unknown = 2 };

/// What is known about the Terminal that is selected.
class TerminalState {
 public:
  /// Numeric value of the last "?V" reply, 0 until one was answered.
  double TerminalVersion = 0;
  /// That reply itself, a wire text.
  std::string versionText;
  FlashState flash = FlashState::Unknown;
  /// Free EEPROM bytes when they were last read, by whatever page, if there was a reply.
  std::optional<double> freeBytes;
  /// When they were asked for last.
  std::optional<std::chrono::system_clock::time_point> freeBytesAsked;
  /// What came in place of a good answer when they were asked for last, in German, UTF-8.
  std::string freeBytesLack;
  /// Something was written there since.
  bool freeBytesChanged = false;
  /// Where who was asked then is not who listens now: "bei Adresse 9", UTF-8.
  std::string freeBytesElsewhere;

  /// Called after any of these has changed.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }
  void Changed() const {
    if (listener_) listener_();
  }

 private:
  std::function<void()> listener_;
};

}  // namespace kelvo
