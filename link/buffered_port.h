#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/serial_port.h"
#include "link/echo_filter.h"

namespace kelvo {

/// The receiving half of a serial port, the same for every device: the input buffer behind the echo
/// filter, the receive events and the traffic listener. While no exchange reads and no page takes
/// what arrives, the newest kKept characters are kept.
class BufferedPort : public SerialPort {
 public:
  /// An unattended line must not fill the memory.
  static constexpr std::size_t kKept = 65536;

  std::size_t CharactersEchoed() const override { return echo_.Returned(); }
  std::size_t CharactersDropped() const override { return dropped_; }
  std::size_t InBufferCount() override;
  void DiscardInput() override;
  std::string Input() override;
  std::string AllInput() override;
  int InputLen() const override { return inputLen_; }
  void SetInputLen(int length) override { inputLen_ = length; }

  void SetReceiveThreshold(int characters) override { threshold_ = characters; }
  int ReceiveThreshold() const override { return threshold_; }
  void SetReceiveHandler(std::function<void()> handler) override { receive_ = std::move(handler); }
  void SetTrafficListener(TrafficListener listener) override { traffic_ = std::move(listener); }
  void SetBreakListener(BreakListener listener) override { break_ = std::move(listener); }

 protected:
  using Time = EchoFilter::Time;

  /// A text is on its way and leaves the line at `lastBit`. What waits in the input is old then:
  /// it is shown by a page that shows what arrives unasked, and dropped.
  void Written(std::string_view text, Time now, Time lastBit);
  /// What was written leaves the line later than was reckoned then.
  void Delayed(Time lastBit) { echo_.Delayed(lastBit); }
  /// Somebody looks: what the system holds is to be Received now.
  virtual void Look() = 0;
  /// Characters have come from the line; tells nobody yet.
  void Received(std::string_view characters, Time now);
  /// Tells of what waits, character by character, as long as somebody takes it.
  void RaiseReceiveEvents();
  /// Characters that have not left the line are about to be dropped, if there are any.
  void Discarding();
  /// The line is about to be set up so.
  void SettingUp(const std::string& settings, Handshaking handshaking);
  /// To be called now and then, so that what only looked like the beginning of an echo is shown.
  void ExpireEcho(Time now);
  std::size_t Buffered() const { return input_.size() - read_; }
  bool EchoExpected() const { return echo_.Expected(); }
  bool EchoBegun() const { return echo_.Begun(); }
  /// The port was opened or closed: nothing waits, nothing is expected.
  void ClearInput();

 private:
  void Add(const std::string& characters);
  void Drop(std::size_t characters);

  std::string input_;
  std::size_t read_ = 0;  // of them are gone already
  std::size_t dropped_ = 0;
  EchoFilter echo_;
  int inputLen_ = 1;
  int threshold_ = 0;
  bool raising_ = false;
  std::function<void()> receive_;
  TrafficListener traffic_;
  BreakListener break_;
  using LineSetting = std::pair<std::string, Handshaking>;
  std::optional<LineSetting> setting_;
};

}  // namespace kelvo
