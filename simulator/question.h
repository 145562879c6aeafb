#pragma once

#include <string_view>

#include "simulator/command_parser.h"

namespace kelvo::sim {

/// Follows what the host sends, whichever Terminal it is meant for.
class Question : private CommandParser::Handler {
 public:
  /// Whether the last command that is complete with these characters, after all that were given
  /// before, is one that is answered.
  bool IsAskedBy(std::string_view sent) {
    asked_ = false;
    for (const char byte : sent) parser_.Feed(static_cast<unsigned char>(byte), *this);
    return asked_;
  }

 private:
  void OnCommand(const CommandRow& row, std::string_view) override {
    asked_ = row.reply != Reply::None || row.command == Command::AskInfo;
  }
  void OnText(unsigned char) override {}
  void OnGraphicText(unsigned char) override {}

  CommandParser parser_;
  bool asked_ = false;
};

}  // namespace kelvo::sim
