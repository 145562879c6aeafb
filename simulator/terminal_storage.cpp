// The Terminal's EEPROM commands, macros and restart.

#include <algorithm>
#include <utility>

#include "simulator/bitmap.h"
#include "simulator/terminal.h"

namespace kelvo::sim {
namespace {

constexpr int kEraseBlock = 256;                            // bytes
constexpr Time kEraseTime = std::chrono::milliseconds(20);  // for one block

// Macros may run macros. The Terminal itself would go round for ever where one runs itself;
// here that ends, so that a test of it does.
constexpr int kMacroDepth = 8;
constexpr int kMacroBudget = 100'000;

std::optional<unsigned char> RecordNumber(const Parameters& parameters) {
  const int number = parameters.Number(0);
  if (parameters.Count() < 1 || number < 0 || number > 255) return std::nullopt;
  return static_cast<unsigned char>(number);
}

}  // namespace

// Deleting what is not there succeeds: afterwards the number is free, as the host wants it.
bool Terminal::Store(Command command, const Parameters& parameters) {
  using Kind = Eeprom::Kind;
  if (command == Command::WriteConfig) return eeprom_.Write(Kind::Config, 0, ConfigCommands());
  if (command == Command::DeleteConfig) {
    eeprom_.Delete(Kind::Config, 0);
    return true;
  }
  const std::optional<unsigned char> number = RecordNumber(parameters);
  if (!number) return false;
  switch (command) {
    case Command::WriteMacro:
      return parameters.Count() >= 2 && eeprom_.Write(Kind::Macro, *number, parameters.Rest(1));
    case Command::WriteKeyTable: {
      const std::optional<std::string> table = PackKeyTable(parameters.Rest(1));
      return table && eeprom_.Write(Kind::KeyTable, *number, *table);
    }
    case Command::WriteBitmap: {
      const std::optional<std::string> bitmap = PackBitmap(parameters);
      return bitmap && eeprom_.Write(Kind::Bitmap, *number, *bitmap);
    }
    case Command::DeleteMacro:
      eeprom_.Delete(Kind::Macro, *number);
      return true;
    case Command::DeleteKeyTable:
      eeprom_.Delete(Kind::KeyTable, *number);
      return true;
    default:
      return false;
  }
}

// The content is gone with the first block; the time is what the blocks take.
void Terminal::StartErase(bool counting) {
  eeprom_.Erase();
  eraseBlocks_ = (eeprom_.Capacity() + kEraseBlock - 1) / kEraseBlock;
  eraseCounts_ = counting;
  if (counting) Send(std::to_string(eraseBlocks_) + "\r");
  eraseStep_ = now_ + kEraseTime;
}

void Terminal::StepErase() {
  eraseBlocks_ = std::max(0, eraseBlocks_ - 1);
  if (eraseCounts_) Send(std::to_string(eraseBlocks_) + "\r");
  if (eraseBlocks_ > 0) {
    *eraseStep_ += kEraseTime;
  } else {
    eraseStep_.reset();
    Acknowledge(true);
  }
}

// The configuration is kept as the commands that bring it back.
std::string Terminal::ConfigCommands() const {
  const auto interface = [](char letter, char buffer, const InterfaceSettings& s) {
    return std::string("\x1B!") + letter + std::to_string(s.baud) + "," + std::to_string(s.parity) +
           "," + std::to_string(s.bits) + "," + std::to_string(s.stopBits) + "," +
           std::to_string(s.handshake) + ";\x1B!" + buffer + std::to_string(s.buffer) + ";";
  };
  return interface('B', 'S', stagedInterface1_) + interface('b', 's', interface2_) +
         "\x1B"
         "2I" +
         std::to_string(receive2_) + ";\x1B!R" + std::to_string(stagedResolution_.width) + "," +
         std::to_string(stagedResolution_.height) + "," + stagedResolution_.option + ";\x1B!P" +
         std::to_string(p0_) + ";" + screen_.ConfigCommands() + keyboards_.ConfigCommands();
}

void Terminal::RunMacro(int number) {
  if (number < 0 || number > 255) return;
  if (follower_ != nullptr) follower_->Calls(number);
  const auto text = eeprom_.Read(Eeprom::Kind::Macro, static_cast<unsigned char>(number));
  const MacroRun run = !text                        ? MacroRun::Missing
                       : macroDepth_ >= kMacroDepth ? MacroRun::TooDeep
                                                    : MacroRun::Runs;
  if (follower_ != nullptr) follower_->Called(number, run);
  if (run == MacroRun::Runs) Run(*text);
}

void Terminal::Run(const std::string& text) {
  if (macroDepth_ == 0) macroBudget_ = kMacroBudget;
  ++macroDepth_;
  RunText(text);
  --macroDepth_;
}

// Every byte as if it had come over the line. A restart on the way ends it.
void Terminal::RunText(const std::string& text) {
  const std::uint64_t restarts = restarts_;
  for (const char byte : text) {
    if (restarts != restarts_) return;
    if (macroBudget_-- <= 0) {
      if (follower_ != nullptr) follower_->GivesUp();
      return;
    }
    parser_.Feed(static_cast<unsigned char>(byte), *this);
  }
}

// Staged settings take effect; without any the stored ones do, or else those of the factory.
void Terminal::Restart(bool keepStaged) {
  if (starting_) return;  // an autostart macro that restarts would never come to an end
  starting_ = true;
  ++restarts_;
  const InterfaceSettings staged = stagedInterface1_;
  const Resolution resolution = stagedResolution_;
  ResetState();
  RestoreConfig();
  if (keepStaged) {
    stagedInterface1_ = staged;
    stagedResolution_ = resolution;
  }
  interface1_ = stagedInterface1_;
  resolution_ = stagedResolution_;
  screen_.Resize(resolution_.width, resolution_.height);
  if (follower_ != nullptr) follower_->HasRestarted();
  if (keepStaged) startEnd_ = now_ + kRestartTime;
  RunMacro(0);
  starting_ = false;
}

void Terminal::ResetState() {
  parser_.Reset();
  screen_.Reset(setup_.width, setup_.height);
  keyboards_.Reset();
  key_.reset();
  selected_ = true;
  checksum_ = 0;
  p0_ = 0;
  stagedInterface1_ = {};
  stagedInterface1_.baud = setup_.baud;
  stagedResolution_ = {setup_.width, setup_.height, {}};
  interface2_ = {};
  interface2_.baud = 9600;
  receive2_ = 0;
  buffer2_.clear();
}

void Terminal::RestoreConfig() {
  const std::optional<std::string> config = eeprom_.Read(Eeprom::Kind::Config, 0);
  if (!config) return;
  macroBudget_ = std::max(macroBudget_, kMacroBudget);
  restoring_ = true;
  RunText(*config);
  restoring_ = false;
  parser_.Reset();
}

}  // namespace kelvo::sim
