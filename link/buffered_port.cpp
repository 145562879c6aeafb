#include "link/buffered_port.h"

namespace kelvo {

void BufferedPort::DiscardInput() { input_.clear(); }

std::string BufferedPort::Input() {
  const std::size_t length = inputLen_ == 0 ? input_.size() : static_cast<std::size_t>(inputLen_);
  std::string text = input_.substr(0, length);
  input_.erase(0, text.size());
  return text;
}

void BufferedPort::Written(std::string_view text, Time now, Time lastBit) {
  RaiseReceiveEvents();
  input_.clear();
  echo_.Written(text, now, lastBit);
  if (traffic_) traffic_(Direction::ToTerminal, text);
}

void BufferedPort::Received(std::string_view characters, Time now) {
  if (characters.empty()) return;
  ExpireEcho(now);
  input_ += echo_.Arrived(characters);
  if (traffic_) traffic_(Direction::FromTerminal, characters);
}

void BufferedPort::ExpireEcho(Time now) {
  // An exchange that waits knows how long: until its end whatever it has written may come back.
  if (threshold_ == 1) input_ += echo_.Expire(now);
}

void BufferedPort::RaiseReceiveEvents() {
  if (raising_) return;
  raising_ = true;
  while (IsOpen() && threshold_ == 1 && receive_ && !input_.empty()) {
    const std::size_t before = input_.size();
    receive_();
    if (input_.size() >= before) break;  // nobody wants it; it stays for the next text to drop
  }
  raising_ = false;
}

void BufferedPort::ClearInput() {
  input_.clear();
  echo_.Reset();
}

}  // namespace kelvo
