#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kelvo {

/// Error numbers of the port layer. 0 is success; any other number not named here is an error of
/// the device or the system, shown to the operator as a number.
enum PortError : std::int16_t {
  PortOk = 0,
  PortNotAvailable = 8006,
  PortInUse = 8010,
  PortAlreadyOpen = 8013,
  PortNumberInvalid = 380,
  PortDeviceError = 8000,
  PortNoPermission = 8012,
};

/// XOn/XOff and RTS/CTS carry the numbers that the port control has for them.
enum class Handshaking { XOnXOff = 1, RtsCts = 2 };

enum class Direction : std::uint8_t { ToTerminal, FromTerminal };
using TrafficListener = std::function<void(Direction direction, std::string_view characters)>;

/// Why what is written may not reach the other end as it was written.
enum class LineBreak : std::uint8_t {
  Discarded,  ///< characters that had not left the line are dropped
  SetAnew,    ///< the line goes on with other settings
};
using BreakListener = std::function<void(LineBreak how)>;

/// The serial port control. Characters are 8 bit, one std::string element each.
///
/// "Not yet sent" means the line: a character counts until its last bit has left, whatever the
/// operating system has taken into its buffers already.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Opening. The number is that of "Com 1" .. "Com 6".
  virtual PortError SetPortNumber(std::int16_t number) = 0;
  virtual PortError Open() = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  /// Whether the open port's device is still there. When it is not the port is closed, and the lost
  /// handler told, as if that had been noticed on the line.
  virtual bool CheckDevice() { return IsOpen(); }

  /// Applies "9600,N,8,1", the handshaking, and on success switches the request-to-send line on.
  /// Returns the port layer's description of what was refused (UTF-8), or an empty text. A line
  /// that the device does not have at all is no error. A device that turns out to be gone is lost,
  /// and the port closed.
  virtual std::string SetUp(const std::string& settings, Handshaking handshaking) = 0;

  // Writing.
  /// What waits in the input is old then: it is raised as a receive event where somebody listens,
  /// and dropped. An exact copy of `text` that comes back is echo and never gets into the input.
  virtual void Write(std::string_view text) = 0;
  virtual std::size_t OutBufferCount() const = 0;
  virtual void DiscardOutput() = 0;
  /// How long it takes until the last character has left the line, as far as that can be known;
  /// never 0 while OutBufferCount() is not.
  virtual std::chrono::nanoseconds OutBufferTime() const = 0;
  /// The device takes nothing although characters wait: its handshake holds the line.
  virtual bool Held() const = 0;

  // Reading.
  /// Characters of whole texts that the line has brought back; they only ever become more.
  virtual std::size_t CharactersEchoed() const = 0;
  /// Characters that were dropped because nobody had read them when a text was written; they only
  /// ever become more.
  virtual std::size_t CharactersDropped() const = 0;
  /// With what the system holds: on a busy machine a time runs out before that has been served.
  virtual std::size_t InBufferCount() = 0;
  /// Drops everything that waits.
  virtual void DiscardInput() = 0;
  /// At most InputLen() characters, all waiting ones when that is 0.
  virtual std::string Input() = 0;
  /// All waiting ones.
  virtual std::string AllInput() = 0;
  virtual int InputLen() const = 0;
  virtual void SetInputLen(int length) = 0;

  // Events.
  /// 0 = no receive events, 1 = an event as soon as a character is waiting.
  virtual void SetReceiveThreshold(int characters) = 0;
  virtual int ReceiveThreshold() const = 0;
  /// Called from the event loop when characters are waiting and the threshold is 1.
  virtual void SetReceiveHandler(std::function<void()> handler) = 0;
  /// Called once, from the event loop, after the device went away. The port is closed then.
  virtual void SetLostHandler(std::function<void()> handler) = 0;
  /// Called, from the event loop, when the device refuses work for another reason than being gone;
  /// told the system's description (UTF-8). The port stays open.
  virtual void SetErrorHandler(std::function<void(const std::string&)> handler) = 0;
  /// Told of everything that crosses the line; an empty listener costs nothing.
  virtual void SetTrafficListener(TrafficListener listener) = 0;
  /// Told of each break just before it comes into force.
  virtual void SetBreakListener(BreakListener listener) = 0;
};

}  // namespace kelvo
