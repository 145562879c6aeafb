#include "simulator/command_parser.h"

#include <utility>

namespace kelvo::sim {

void CommandParser::Feed(unsigned char byte, Handler& handler) {
  if (byte == kEsc && state_ != State::Raw) {
    state_ = State::Name;
    name_.clear();
    return;
  }
  switch (state_) {
    case State::Text:
      handler.OnText(byte);
      break;
    case State::Name:
      FeedName(byte, handler);
      break;
    case State::Parameters:
      Collect(byte, ';', handler);
      break;
    case State::Raw:
      Collect(byte, kEtx, handler);
      break;
    case State::GraphicText:
      if (byte == kEot) {
        state_ = State::Text;
      } else {
        handler.OnGraphicText(byte);
      }
      break;
    case State::Unknown:
      if (byte == ';') state_ = State::Text;
      break;
  }
}

void CommandParser::FeedName(unsigned char byte, Handler& handler) {
  name_ += static_cast<char>(byte);
  const NameMatch match = FindCommand(name_);
  if (match.row != nullptr) {
    Begin(*match.row, handler);
  } else if (!match.mayGrow) {
    state_ = byte == ';' ? State::Text : State::Unknown;
  }
}

void CommandParser::Begin(const CommandRow& row, Handler& handler) {
  row_ = &row;
  parameters_.clear();
  switch (row.ending) {
    case Ending::AtOnce:
      state_ = State::Text;
      handler.OnCommand(row, {});
      break;
    case Ending::Semicolon:
      state_ = State::Parameters;
      break;
    case Ending::Etx:
      state_ = State::Raw;
      break;
    case Ending::Text:
      state_ = State::GraphicText;
      handler.OnCommand(row, {});
      break;
  }
}

void CommandParser::Collect(unsigned char byte, unsigned char end, Handler& handler) {
  if (byte != end) {
    if (parameters_.size() < kMaxParameters) parameters_ += static_cast<char>(byte);
    return;
  }
  state_ = State::Text;
  // Moved out, because a macro that the handler runs comes back here with commands of its own.
  const std::string parameters = std::move(parameters_);
  handler.OnCommand(*row_, parameters);
}

}  // namespace kelvo::sim
