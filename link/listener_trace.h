#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kelvo {

/// Who listens on the bus, as far as the commands say that were sent: read from the characters
/// themselves, in whatever pieces they go out and whoever sends them. What a macro selects counts
/// when it runs, if its text was seen when it was written; one that was there before is taken for
/// one that selects nobody.
class ListenerTrace {
 public:
  enum class Change : std::uint8_t { None, Selected, Restarted };

  /// What of these characters was the last to decide who listens.
  Change Sent(std::string_view characters);

  /// Told each command that selects, restarts or works on the EEPROM when the last of its
  /// characters is there, before any of it counts here; without its ESC. What a macro does is not
  /// told.
  void SetListener(std::function<void(std::string_view command)> listener) {
    listener_ = std::move(listener);
  }

  /// The address selected last, 255 for all; nothing when that is not known.
  std::optional<int> Address() const { return address_; }
  /// The Terminal that listened has handed over to an address under which none can hear it.
  bool Nobody() const { return nobody_; }
  /// A Terminal has told its address.
  void Told(int address);
  /// Another line, or Terminals that may have been switched off meanwhile.
  void Forget();

 private:
  void Take(char character);
  void TakeOfCommand(char character);
  void Act(std::string_view command);
  void Select(std::string_view number);
  void Select(int address);
  void SelectFromMakro(int address);
  void KeepMakro(std::string_view parameters);
  void RunMakro(int number);

  std::optional<int> address_;
  bool nobody_ = false;
  Change change_ = Change::None;
  std::string command_;  // what follows the last ESC, as long as it may be of interest
  bool open_ = false;
  int depth_ = 0;                                     // of macros that run
  std::optional<int> runs_;                           // who runs them
  std::map<std::pair<int, int>, std::string> texts_;  // of address and number
  std::function<void(std::string_view)> listener_;
};

}  // namespace kelvo
