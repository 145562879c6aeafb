#include "link/buffered_port.h"

#include <algorithm>

namespace kelvo {

void BufferedPort::DiscardInput() {
  dropped_ += Buffered();
  input_.clear();
  read_ = 0;
}

std::size_t BufferedPort::InBufferCount() {
  if (Buffered() == 0) Look();
  return Buffered();
}

std::string BufferedPort::Input() {
  if (inputLen_ == 0) return AllInput();
  std::string text = input_.substr(read_, std::min(InBufferCount(), std::size_t(inputLen_)));
  Drop(text.size());
  return text;
}

std::string BufferedPort::AllInput() {
  Look();
  std::string text = input_.substr(read_);
  Drop(text.size());
  return text;
}

// Who reads character by character must not move all the others each time.
void BufferedPort::Drop(std::size_t characters) {
  read_ += characters;
  if (read_ < input_.size() - read_) return;
  input_.erase(0, read_);
  read_ = 0;
}

void BufferedPort::Add(const std::string& characters) {
  input_ += characters;
  // An exchange switches the receive events off; its reply may be of any length.
  if (threshold_ == 1 && Buffered() > kKept) Drop(Buffered() - kKept);
}

void BufferedPort::Written(std::string_view text, Time now, Time lastBit) {
  RaiseReceiveEvents();
  DiscardInput();
  echo_.Written(text, now, lastBit);
  if (traffic_) traffic_(Direction::ToTerminal, text);
}

void BufferedPort::Received(std::string_view characters, Time now) {
  if (characters.empty()) return;
  ExpireEcho(now);
  Add(echo_.Arrived(characters));
  if (traffic_) traffic_(Direction::FromTerminal, characters);
}

void BufferedPort::Discarding() {
  if (break_ && OutBufferCount() > 0) break_(LineBreak::Discarded);
}

void BufferedPort::SettingUp(const std::string& settings, Handshaking handshaking) {
  const LineSetting setting{settings, handshaking};
  const bool anew = setting_ && *setting_ != setting;
  setting_ = setting;
  if (break_ && anew) break_(LineBreak::SetAnew);
}

void BufferedPort::ExpireEcho(Time now) {
  // An exchange that waits knows how long: until its end whatever it has written may come back.
  if (threshold_ == 1) Add(echo_.Expire(now));
}

void BufferedPort::RaiseReceiveEvents() {
  if (raising_) return;
  raising_ = true;
  while (IsOpen() && threshold_ == 1 && receive_ && Buffered() > 0) {
    const std::size_t before = Buffered();
    receive_();
    if (Buffered() >= before) break;  // nobody wants it; it stays for the next text to drop
  }
  raising_ = false;
}

void BufferedPort::ClearInput() {
  DiscardInput();
  echo_.Reset();
}

}  // namespace kelvo
