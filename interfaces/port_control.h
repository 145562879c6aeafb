#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "base/operator.h"
#include "base/serial_port.h"
#include "link/commands.h"

namespace kelvo {

/// An entry of a settings list: the port uses the text, the Terminal's commands the number.
struct ListEntry {
  std::string_view text;
  int number;
};

/// The settings lists `cboCom`, by their index. The first six are those of the link to the PC, the
/// next six those of the Terminal's second interface.
enum ComList {
  ComBaud1 = 0,
  ComParity1,
  ComBits1,
  ComStopBit1,
  ComShake1,
  ComPuffer1,
  ComBaud2,
  ComParity2,
  ComBits2,
  ComStopbit2,
  ComShake2,
  ComPuffer2,
  ComRecCom2,
  ComPortNr,
  ComListCount,
};

/// The entries of a list, and the field of `Schnittstelle` that it is bound to.
std::span<const ListEntry> ComEntries(ComList list);
std::string_view ComField(ComList list);
/// Position of a text in a list, -1 if it is none of its entries.
int ComPosition(ComList list, std::string_view text);
/// Position of "(keine)" in the port list; the port number of an entry is its position + 1.
inline constexpr int kNoPortPosition = 6;

/// List positions of the two "Standard - Werte" buttons. The receive mode belongs to the second.
using ComDefaults = std::span<const std::pair<ComList, std::string_view>>;
ComDefaults DefaultsCom1();
ComDefaults DefaultsCom2();

/// The numbers chosen in the lists, -1 where nothing is chosen.
using ComNumbers = std::array<int, ComListCount>;

/// Rate to handshake of an interface, from the list of its rate on.
InterfaceNumbers InterfaceNumbersFrom(const ComNumbers& numbers, ComList first);

/// What the PC port is set up with.
struct PortSettings {
  std::string text;  ///< "9600,N,8,1"
  Handshaking handshaking = Handshaking::XOnXOff;
};
/// From the texts of lists 0..3 and the position (0 or 1) in list 4.
PortSettings MakePortSettings(std::string_view baud, std::string_view parity, std::string_view bits,
                              std::string_view stopBits, int handshakePosition);

/// Opens the PC port and says what went wrong.
class PortControl {
 public:
  PortControl(SerialPort& com1, Operator& person) : com1_(com1), operator_(person) {}

  /// True from the start of the main window's load until its first paint; the port is not opened
  /// while it is.
  bool FormLoading = true;

  /// Opens "Com `port`"; 0 or the port layer's error number, which has been shown then. Does
  /// nothing, and returns 0, while the main window is loading.
  std::int16_t OpenCom(std::int16_t port);
  /// The set-up that follows a successful opening. A refused setting is shown with its description.
  void SetUpPort(const PortSettings& settings);

  /// Says, for the operator (UTF-8), how it stands with the device of a port that could not be
  /// opened, and what helps.
  void SetExplainer(std::function<std::string(std::int16_t port)> explain) {
    explain_ = std::move(explain);
  }
  /// Called after a failed opening; the port list then shows "(keine)".
  void SetFailureHandler(std::function<void()> handler) { failed_ = std::move(handler); }

 private:
  std::int16_t Failed(PortError error, std::int16_t port);

  SerialPort& com1_;
  Operator& operator_;
  std::function<void()> failed_;
  std::function<std::string(std::int16_t)> explain_;
};

}  // namespace kelvo
