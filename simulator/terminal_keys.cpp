// The Terminal's keys and its second interface.

#include <algorithm>

#include "simulator/terminal.h"

namespace kelvo::sim {

using std::chrono::milliseconds;

// ---- keys ----

bool Terminal::PressKey(int row, int column, Time now) {
  Advance(now);
  if (!powered_ || !keyboards_.Wired(row, column)) return false;
  const KeyTimes& times = keyboards_.Times();
  key_ = {row, column, now, now + milliseconds(times.debounce * times.scan), std::nullopt};
  Advance(now);
  return true;
}

void Terminal::ReleaseKey(Time now) {
  Advance(now);
  if (key_) key_->released = std::max(now, key_->pressed + kShortestPress);
}

// When the key that is held is sent next.
std::optional<Time> Terminal::KeyCounts() const {
  if (!key_ || (key_->released && *key_->released < key_->counts)) return std::nullopt;
  return key_->counts;
}

// On a bus only the selected Terminal may use the line, so a key of another one is lost.
void Terminal::StepKey() {
  const std::optional<unsigned char> code = keyboards_.MatrixCode(key_->row, key_->column);
  if (code && selected_) {
    const char character = static_cast<char>(*code);
    Send({&character, 1});
  }
  const KeyTimes& times = keyboards_.Times();
  const bool first = key_->counts == key_->pressed + milliseconds(times.debounce * times.scan);
  const bool repeats = times.delay > 0 && times.repeat > 0;
  key_->counts += milliseconds((first ? times.delay : times.repeat) * times.scan);
  if (!repeats || !keyboards_.Wired(key_->row, key_->column)) key_.reset();
}

void Terminal::Type(unsigned char character, Time now) {
  Advance(now);
  if (!powered_ || !selected_) return;
  const char code = static_cast<char>(keyboards_.AtCode(character));
  Send({&code, 1});
}

// ---- the second interface ----

void Terminal::ReceiveInterface2(std::string_view text, Time now) {
  Advance(now);
  if (!powered_) return;
  std::string received;
  for (const char byte : text) {
    if (interface2_.handshake == 0 && (byte == kXon || byte == kXoff)) continue;
    received += static_cast<char>(interface2_.bits == 7 ? byte & 0x7F : byte);
  }
  if (receive2_ == 0) {
    const auto size = static_cast<std::size_t>(interface2_.buffer);
    buffer2_ += received.substr(0, size - std::min(size, buffer2_.size()));
  } else if (selected_) {
    Send(received);
  }
}

void Terminal::SetReceive2(int mode) {
  receive2_ = std::clamp(mode, 0, 2);
  if (receive2_ == 0) return;
  if (receive2_ == 1) Send(buffer2_);
  buffer2_.clear();
}

}  // namespace kelvo::sim
