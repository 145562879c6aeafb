#pragma once

#include <string>
#include <string_view>

#include "simulator/command_table.h"

namespace kelvo::sim {

inline constexpr unsigned char kEtx = 3;  ///< ends a macro text
inline constexpr unsigned char kEot = 4;  ///< ends a graphic text
inline constexpr unsigned char kAck = 6;
inline constexpr unsigned char kXon = 17;
inline constexpr unsigned char kXoff = 19;
inline constexpr unsigned char kNak = 21;
inline constexpr unsigned char kEsc = 27;  ///< begins every command

/// Takes the line apart byte by byte:
///
///   line      = { text-byte | command }
///   command   = ESC name [ parameters ";" ]          (which of the four: Ending)
///             | ESC "EWM" raw ETX
///             | ESC "GT" text-byte... ( EOT | before the next ESC )
///             | ESC unknown-letters... ";"           (ignored)
///
/// ESC begins a new command wherever it stands, other than in a macro's raw text; a command that
/// it cuts short is ignored.
class CommandParser {
 public:
  class Handler {
   public:
    virtual ~Handler() = default;
    /// `parameters` is what stood between the name and the end mark. It is valid during the call.
    virtual void OnCommand(const CommandRow& row, std::string_view parameters) = 0;
    /// A byte outside of commands.
    virtual void OnText(unsigned char byte) = 0;
    /// A byte of a graphic text.
    virtual void OnGraphicText(unsigned char byte) = 0;
  };

  /// A command's text beyond this is dropped; more than any EEPROM and any picture holds.
  static constexpr std::size_t kMaxParameters = 1 << 18;

  /// The handler may feed further bytes (a macro's) from within OnCommand.
  void Feed(unsigned char byte, Handler& handler);
  /// Forgets a command that is not complete.
  void Reset() { state_ = State::Text; }

 private:
  enum class State { Text, Name, Parameters, Raw, GraphicText, Unknown };

  void FeedName(unsigned char byte, Handler& handler);
  void Begin(const CommandRow& row, Handler& handler);
  void Collect(unsigned char byte, unsigned char end, Handler& handler);

  State state_ = State::Text;
  std::string name_;
  std::string parameters_;
  const CommandRow* row_ = nullptr;
};

}  // namespace kelvo::sim
