#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/command_parser.h"
#include "simulator/eeprom.h"
#include "simulator/frame.h"
#include "simulator/keyboards.h"
#include "simulator/screen.h"
#include "simulator/terminal_follower.h"

namespace kelvo::sim {

/// A point in time, or a span of it. Whoever runs a Terminal decides where time begins.
using Time = std::chrono::nanoseconds;

/// How a Terminal can misbehave.
enum class Fault {
  None,
  Silent,   ///< carries everything out and answers nothing
  Nak,      ///< refuses every command that is acknowledged
  Garbled,  ///< every character that it sends is wrong; an ACK arrives as "A"
  Late,     ///< answers 700 ms late
  Slow,     ///< answers 300 ms late, which is still in time
  Drops,    ///< loses every n-th character that it receives
  Doubles,  ///< hears every n-th character twice
  Flips,    ///< hears every n-th character with a wrong bit
};

/// What an operator sets on the device itself, not over the line.
struct TerminalSetup {
  std::string version = "2.10";  ///< as "?V" tells it, without the "F" for flash
  bool flash = true;
  bool checksum = true;      ///< old firmware has none and ignores its commands
  int address = 0;           ///< 0..255
  bool echoQueries = false;  ///< repeats ESC and the query in front of the answer
  Fault fault = Fault::None;
  int faultEvery = 7;  ///< characters from one fault of reception to the next
  int eepromBytes = 8192;
  int width = 240;   ///< pixels, 20..640, as long as no resolution is stored
  int height = 128;  ///< pixels, 20..480
  int baud = 19200;  ///< as long as no other rate is stored
};

/// Whether the Terminal's interfaces have this rate, in bits a second.
bool IsRate(int baud);

/// The settings of one serial interface, numbered as in the commands.
struct InterfaceSettings {
  int baud = 19200;
  int parity = 0;
  int bits = 8;
  int stopBits = 1;
  int handshake = 0;
  int buffer = 16384;  ///< characters

  Frame LineFrame() const { return {baud, bits, parity}; }
  bool operator==(const InterfaceSettings&) const = default;
};

/// A simulated Terminal: characters in, characters out, and a picture. It has no clock of its
/// own; times that it is given must never go back.
class Terminal : private CommandParser::Handler {
 public:
  /// The fonts must outlive the Terminal. It starts without power.
  Terminal(TerminalSetup setup, const DeviceFonts& fonts);
  Terminal& operator=(const Terminal&) = delete;
  /// Another one in the same state, which nobody follows.
  static std::unique_ptr<Terminal> CopyOf(const Terminal& other);

  /// Told of everything that is carried out from now on; null for nobody.
  void SetFollower(TerminalFollower* follower) { follower_ = follower; }
  /// Forgets a command that is not complete.
  void DropCommand() { parser_.Reset(); }
  /// Carries out a text as if it were that of a macro.
  void Run(const std::string& text);

  /// How long a restart by command takes. Its effects are there at once, but for so long the
  /// Terminal answers nothing and does nothing. Switched on by its operator it is ready at once.
  static constexpr Time kRestartTime = std::chrono::milliseconds(200);

  /// Takes the stored configuration and runs macro 0.
  void PowerOn(Time now);
  void PowerOff();
  void SetPower(bool on, Time now);
  bool Powered() const { return powered_; }

  /// A character whose stop bit has just passed. While the Terminal erases its EEPROM or restarts,
  /// characters wait in the interface's buffer. From three quarters full until a quarter it asks
  /// the host to pause, by XOFF and XON or by ReadyToReceive; what comes all the same and does not
  /// fit is lost. With the former handshake the host's XOFF and XON hold the Terminal's own output.
  void Receive(unsigned char byte, Time now);
  /// Does what has become due, at the latest at `now`.
  void Advance(Time now);
  /// Lets it end at once what it needs time for, an erasure or a restart.
  void Finish();
  /// When Advance has something to do.
  std::optional<Time> NextEvent() const;
  /// When the next character of an answer is, or was, ready to be sent.
  std::optional<Time> OutputReady() const;
  bool ReadyToReceive() const { return !full_ || interface1_.handshake == 0; }
  /// Takes that character; only while OutputReady has one.
  unsigned char TakeOutput();

  /// The lines of P1, bit i = line i.
  void SetP1(unsigned char lines) { p1_ = lines; }
  unsigned char P1() const { return p1_; }
  unsigned char P0() const { return p0_; }
  /// Presses a key of the matrix keypad (0..7 each) in place of one that is held; false when no key
  /// is wired there. It is sent when it counts, and again and again until it is let go (KeyTimes).
  bool PressKey(int row, int column, Time now);
  /// Lets the key go, but not before it has been down for kShortestPress: no finger is quicker.
  void ReleaseKey(Time now);
  static constexpr Time kShortestPress = std::chrono::milliseconds(100);
  /// A character typed on the PC keyboard.
  void Type(unsigned char character, Time now);
  /// Characters that the device on the second interface sends, which is set as that interface: of
  /// 7 bits only those arrive, and XON and XOFF are no characters while they are its handshake.
  /// Received ("2I") with 1 or 2 they go on to the host; with 0 they wait in the interface's
  /// buffer, as far as it holds. Switching on with 1 sends on what waits there, with 2 drops it.
  void ReceiveInterface2(std::string_view text, Time now);

  const TerminalSetup& Setup() const { return setup_; }
  void SetVersion(std::string version, bool flash);
  void SetAddress(int address) { setup_.address = address & 0xFF; }
  void SetEchoQueries(bool on) { setup_.echoQueries = on; }
  void SetFault(Fault fault) { setup_.fault = fault; }
  void SetFaultEvery(int characters) { setup_.faultEvery = characters; }

  /// The sum over what it has received since the last reset of the sum.
  std::uint16_t ChecksumNow() const { return checksum_; }
  /// Whether it acts on what it receives: its address or 255 is selected.
  bool Selected() const { return selected_; }
  /// The settings in force on the line to the host.
  const InterfaceSettings& Interface1() const { return interface1_; }
  const Screen& Display() const { return screen_; }
  Screen& Display() { return screen_; }
  /// Whether a blinking cursor is in its visible half second.
  static bool CursorLit(Time now);
  const Keyboards& Keys() const { return keyboards_; }
  const Eeprom& Memory() const { return eeprom_; }
  Eeprom& Memory() { return eeprom_; }

  /// One command, or plain text between commands, as it came over the line or from a macro.
  struct LogEntry {
    const CommandRow* row;  ///< null for plain text
    std::string text;       ///< parameters or text; cut after kLogText bytes
  };
  static constexpr std::size_t kLogEntries = 200;
  static constexpr std::size_t kLogText = 200;
  const std::deque<LogEntry>& Log() const { return log_; }
  /// Entries that there have been, those dropped from the log included.
  std::uint64_t LogCount() const { return logCount_; }

 private:
  Terminal(const Terminal&) = default;

  struct OutputByte {
    Time ready;
    unsigned char byte;
  };
  struct HeldKey {
    int row;
    int column;
    Time pressed;
    Time counts;  // next
    std::optional<Time> released;
  };
  struct Resolution {
    int width;
    int height;
    std::string option;
  };

  void OnCommand(const CommandRow& row, std::string_view parameters) override;
  void OnText(unsigned char byte) override;
  void OnGraphicText(unsigned char byte) override;

  bool FaultStrikes();
  void Accept(unsigned char byte);
  bool Busy() const { return eraseStep_ || startEnd_; }
  void FollowBuffer();
  void Process(unsigned char byte);
  void ProcessWaiting();
  void SelectAddress(std::string_view parameters);
  void Execute(const CommandRow& row, const Parameters& parameters);
  void ExecuteSetting(Command command, const Parameters& parameters);
  std::optional<std::string> Answer(Command query) const;
  std::string Information() const;
  std::string Checksum() const;
  void Send(std::string_view bytes);
  void Acknowledge(bool done);

  // terminal_keys.cpp
  std::optional<Time> KeyCounts() const;
  void StepKey();

  // terminal_storage.cpp
  bool Store(Command command, const Parameters& parameters);
  void StartErase(bool counting);
  void StepErase();
  std::string ConfigCommands() const;
  void RunMacro(int number);
  void RunText(const std::string& text);
  void Restart(bool keepStaged);
  void ResetState();
  void RestoreConfig();

  void SetResolution(const Parameters& parameters);
  void SetInterface(InterfaceSettings& settings, const Parameters& parameters);
  void SetReceive2(int mode);
  static void SetBuffer(InterfaceSettings& settings, int bytes);
  void AddToLog(const CommandRow* row, std::string_view text);

  TerminalFollower* follower_ = nullptr;
  TerminalSetup setup_;
  bool powered_ = false;
  Time now_{};
  CommandParser parser_;
  Eeprom eeprom_;
  Screen screen_;
  Keyboards keyboards_;

  bool selected_ = true;
  std::uint16_t checksum_ = 0;
  int faultCounter_ = 0;
  unsigned char p0_ = 0;
  unsigned char p1_ = 0;
  // "!B", "!S" and "!R" wait in the staged values for the next restart.
  InterfaceSettings interface1_;
  InterfaceSettings stagedInterface1_;
  InterfaceSettings interface2_;
  int receive2_ = 0;
  std::string buffer2_;  // received while receiving was off
  Resolution resolution_;
  Resolution stagedResolution_;

  std::deque<unsigned char> waiting_;  // received while busy
  bool full_ = false;                  // so far that the host has been asked to pause
  bool hostPauses_ = false;            // has sent XOFF, and no XON since
  std::deque<OutputByte> output_;
  std::optional<Time> startEnd_;
  std::optional<Time> eraseStep_;
  int eraseBlocks_ = 0;
  bool eraseCounts_ = false;

  std::optional<HeldKey> key_;

  int macroDepth_ = 0;
  int macroBudget_ = 0;  // bytes that the outermost macro may still spend
  bool starting_ = false;
  bool restoring_ = false;
  std::uint64_t restarts_ = 0;
  std::deque<LogEntry> log_;
  std::uint64_t logCount_ = 0;
};

}  // namespace kelvo::sim
