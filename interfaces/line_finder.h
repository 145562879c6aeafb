#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "link/exchange.h"

// Finds out how the Terminal's interface is set: asks for the version with one setting of the PC's
// port after the other.

namespace kelvo {

/// What came back with one setting.
enum class LineHeard {
  Nothing,
  Unreadable,  ///< characters, but no version
  Terminal,    ///< a version
  Refused,     ///< the device cannot be set so
  Held,        ///< the question could not leave
};

struct LineResult {
  std::string settings;  ///< "9600,N,8,1"
  LineHeard heard = LineHeard::Nothing;
  std::string received;  ///< a wire text
};

/// All settings in the order in which they are tried: the rates at 8 bits, no parity, 1 stop bit
/// first.
std::vector<std::string> LineTries();
/// How many of them are the rates alone.
inline constexpr std::size_t kUsualTries = 6;

/// For the operator, UTF-8.
std::string HeardText(const LineResult& result);
/// What the whole search means; `address` is the one that was asked.
std::string FinderReport(const std::vector<LineResult>& results, int address, bool stopped);

/// What to try sooner than the rest, once the usual settings have been tried in vain; empty before
/// and after.
std::string AdviceAfterRates(const std::vector<LineResult>& results, int address);

class LineFinder {
 public:
  LineFinder(Exchange& exchange, SerialPort& com1) : exchange_(exchange), com1_(com1) {}

  /// Tries one after the other, until one is understood. The port must be open; how it is set
  /// afterwards is the last try.
  std::vector<LineResult> Run(int address, Handshaking handshaking,
                              const std::function<void(const LineResult&)>& listener);
  /// Ends it after the present try.
  void Stop() { stopping_ = true; }
  bool Stopped() const { return stopping_; }

 private:
  LineResult Try(const std::string& settings, int address, Handshaking handshaking);

  Exchange& exchange_;
  SerialPort& com1_;
  bool stopping_ = false;
};

}  // namespace kelvo
