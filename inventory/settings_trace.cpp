#include "inventory/settings_trace.h"

#include <algorithm>

#include "base/val.h"
#include "link/addresses.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

using enum CommandName;

// What a command sets, so that a later one replaces it; empty for one that sets nothing that is
// kept.
std::string WhatIsSet(const SentCommand& command) {
  switch (command.row->name) {
    case SetPort:
    case SetResolution:
    case SetInterface1:
    case SetBuffer1:
    case SetInterface2:
    case SetBuffer2:
    case SetReceiveMode2:
    case SwitchCursor:
    case SetTextFont:
    case SetTextAttribute:
    case SetTextMode:
    case SetTextZoom:
    case ActivateMatrixTable:
    case ActivateAtTable:
    case SetMatrixSize:
    case SetMatrixConfig:
      return std::string(command.row->letters);
    case DefineCursor:  // each kind has a shape of its own
      return std::string(command.row->letters) +
             std::to_string(RoundToEven(Val(command.parameters)));
    case StartMatrix:
    case StopMatrix:
      return "matrix";
    default:
      return {};
  }
}

std::string CommandText(const SentCommand& command) {
  std::string text(1, kEsc);
  text.append(command.row->letters).append(command.parameters);
  if (command.row->ending == Ending::Semicolon) text += kEndMark;
  return text;
}

}  // namespace

void Settings::Take(std::string_view commands, JournalTime time) {
  WalkCommands(commands, [this, time](const SentCommand& command) {
    if (command.row == nullptr) return true;
    const std::string what = WhatIsSet(command);
    if (what.empty()) return true;
    const auto old = std::find_if(settings_.begin(), settings_.end(),
                                  [&what](const auto& setting) { return setting.first == what; });
    if (old != settings_.end()) settings_.erase(old);
    settings_.emplace_back(what, Setting{CommandText(command), time});
    return true;
  });
}

std::string Settings::Text() const {
  std::string text;
  for (const auto& [what, setting] : settings_) text += setting.command;
  return text;
}

const Settings::Setting* Settings::Find(std::string_view letters) const {
  const auto found = std::find_if(settings_.begin(), settings_.end(),
                                  [letters](const auto& one) { return one.first == letters; });
  return found == settings_.end() ? nullptr : &found->second;
}

void SettingsTrace::ForEach(const std::function<void(Settings&)>& act) {
  if (listener_.address == kUnknownAddress) return;
  act(settings_[listener_]);
  if (listener_.address != kAllAddresses) return;
  for (auto& [terminal, settings] : settings_) {
    const bool other = terminal.address != kAllAddresses;
    if (other && terminal.device == listener_.device) act(settings);
  }
}

void SettingsTrace::Sent(std::string_view characters, const std::string& device, JournalTime time) {
  if (device != listener_.device) listener_ = {device, kUnknownAddress};
  WalkCommands(characters, [this, time](const SentCommand& command) {
    if (command.row == nullptr) return true;
    if (command.row->name == SelectAddress) {
      listener_.address = RoundToEven(Val(command.parameters));
    } else if (command.row->name == Restart) {
      ForEach([](Settings& settings) { settings.Clear(); });
    } else if (!WhatIsSet(command).empty()) {
      ForEach(
          [text = CommandText(command), time](Settings& settings) { settings.Take(text, time); });
    }
    return true;
  });
}

const Settings& SettingsTrace::Of(const TerminalId& terminal) const {
  static const Settings nothing;
  const auto own = settings_.find(terminal);
  return own == settings_.end() ? nothing : own->second;
}

}  // namespace kelvo
