#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "inventory/entry.h"

namespace kelvo {

/// Commands that set what the configuration keeps: each setting once, with what was set last, in
/// the order in which they were set. The settings of the interfaces and the resolution count
/// from a restart on.
class Settings {
 public:
  Settings() = default;
  /// Takes those of a text; what else is in it is left out.
  explicit Settings(std::string_view commands) { Take(commands); }
  void Take(std::string_view commands, JournalTime time = {});
  void Clear() { settings_.clear(); }
  /// As a text that sets them.
  std::string Text() const;

  struct Setting {
    std::string command;
    JournalTime time;  ///< when it was taken
  };
  /// The one whose command begins with these letters, which for DefineCursor its kind follows;
  /// nullptr without one.
  const Setting* Find(std::string_view letters) const;

 private:
  std::vector<std::pair<std::string, Setting>> settings_;  // by what it sets
};

/// What was set from here on each Terminal since it was started: whoever sent it, as far as one
/// Terminal or all were selected.
class SettingsTrace {
 public:
  /// Characters that go to the line of that device.
  void Sent(std::string_view characters, const std::string& device, JournalTime time);
  const Settings& Of(const TerminalId& terminal) const;
  /// Terminals may have been switched off meanwhile, or are others.
  void Forget() { *this = {}; }

 private:
  void ForEach(const std::function<void(Settings&)>& act);

  TerminalId listener_;
  std::map<TerminalId, Settings> settings_;
};

}  // namespace kelvo
