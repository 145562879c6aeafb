#pragma once

#include <string_view>

#include "simulator/command_parser.h"

namespace kelvo::sim {

/// Whether this may be the end of an answer.
inline bool EndsAnswer(std::string_view text) {
  const auto last = text.empty() ? '\0' : static_cast<unsigned char>(text.back());
  return last == ';' || last == kAck || last == kNak || last == '\n';
}

/// Follows what the host sends, whichever Terminal it is meant for.
class Question : private CommandParser::Handler {
 public:
  /// How many of the commands that are complete with these characters, after all that were given
  /// before, are answered; 0 when the last one of them is not.
  int AskedBy(std::string_view sent) {
    asked_ = 0;
    lastAsks_ = false;
    for (const char byte : sent) parser_.Feed(static_cast<unsigned char>(byte), *this);
    return lastAsks_ ? asked_ : 0;
  }

 private:
  void OnCommand(const CommandRow& row, std::string_view) override {
    lastAsks_ = row.reply != Reply::None || row.command == Command::AskInfo;
    if (lastAsks_) ++asked_;
  }
  void OnText(unsigned char) override {}
  void OnGraphicText(unsigned char) override {}

  CommandParser parser_;
  int asked_ = 0;
  bool lastAsks_ = false;
};

}  // namespace kelvo::sim
