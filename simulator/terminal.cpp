#include "simulator/terminal.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace kelvo::sim {
namespace {

constexpr Time kBlinkHalf = std::chrono::milliseconds(500);
constexpr Time kLate = std::chrono::milliseconds(700);
constexpr Time kSlow = std::chrono::milliseconds(300);
constexpr unsigned char kGarbling = kAck ^ 'A';

constexpr int kAllAddresses = 255;

}  // namespace

bool IsRate(int baud) {
  static constexpr std::array kRates = {1200, 2400, 4800, 9600, 14400, 19200};
  return std::find(kRates.begin(), kRates.end(), baud) != kRates.end();
}

Terminal::Terminal(TerminalSetup setup, const DeviceFonts& fonts)
    : setup_(std::move(setup)),
      eeprom_(setup_.eepromBytes),
      screen_(fonts, setup_.width, setup_.height),
      keyboards_(eeprom_) {
  ResetState();
}

std::unique_ptr<Terminal> Terminal::CopyOf(const Terminal& other) {
  std::unique_ptr<Terminal> copy(new Terminal(other));
  copy->keyboards_.LieIn(copy->eeprom_);
  copy->follower_ = nullptr;
  return copy;
}

void Terminal::PowerOn(Time now) {
  now_ = now;
  powered_ = true;
  Restart(false);
  FollowBuffer();
}

void Terminal::SetPower(bool on, Time now) {
  if (on) {
    PowerOn(now);
  } else {
    PowerOff();
  }
}

void Terminal::PowerOff() {
  powered_ = false;
  parser_.Reset();
  waiting_.clear();
  output_.clear();
  eraseStep_.reset();
  startEnd_.reset();
  key_.reset();
  hostPauses_ = false;
  p0_ = 0;
  screen_.Reset(screen_.Pixels().Width(), screen_.Pixels().Height());
}

void Terminal::SetVersion(std::string version, bool flash) {
  setup_.version = std::move(version);
  setup_.flash = flash;
}

bool Terminal::CursorLit(Time now) { return now / kBlinkHalf % 2 == 0; }

// ---- the line ----

void Terminal::Receive(unsigned char byte, Time now) {
  if (!powered_) return;
  Advance(now);
  if (!FaultStrikes()) return Accept(byte);
  if (setup_.fault == Fault::Flips) {
    // Each bit twice in a row, so that two faults may leave the sum as it was.
    const int hit = faultCounter_ / setup_.faultEvery - 1;
    Accept(static_cast<unsigned char>(byte ^ 1 << hit / 2 % 8));
  } else if (setup_.fault == Fault::Doubles) {
    Accept(byte);
    Accept(byte);
  }
}

// Whether the character that is just received is one that the fault hits.
bool Terminal::FaultStrikes() {
  const Fault fault = setup_.fault;
  if (fault != Fault::Drops && fault != Fault::Doubles && fault != Fault::Flips) return false;
  return ++faultCounter_ % std::max(1, setup_.faultEvery) == 0;
}

void Terminal::Accept(unsigned char byte) {
  if (interface1_.handshake == 0 && (byte == kXon || byte == kXoff)) {
    hostPauses_ = byte == kXoff;
  } else if (Busy()) {
    if (static_cast<int>(waiting_.size()) < interface1_.buffer) waiting_.push_back(byte);
    FollowBuffer();
  } else {
    Process(byte);
  }
}

// Asks the host to pause or to go on, in front of what waits to be sent. On a bus only the selected
// Terminal may use the line.
void Terminal::FollowBuffer() {
  const int size = static_cast<int>(waiting_.size());
  const bool full = size * 4 >= interface1_.buffer * (full_ ? 1 : 3);
  if (full == full_) return;
  full_ = full;
  if (interface1_.handshake != 0 || !selected_ || setup_.fault == Fault::Silent) return;
  output_.push_front({now_, full ? kXoff : kXon});
}

void Terminal::Advance(Time now) {
  for (auto next = NextEvent(); next && *next <= now; next = NextEvent()) {
    now_ = std::max(now_, *next);
    if (KeyCounts() == next) {
      StepKey();
      continue;
    }
    if (startEnd_ == next) {
      startEnd_.reset();
    } else {
      StepErase();
    }
    ProcessWaiting();
  }
  now_ = std::max(now_, now);
}

void Terminal::Finish() {
  while (Busy()) Advance(*NextEvent());
}

std::optional<Time> Terminal::NextEvent() const {
  if (!key_ && !Busy()) return std::nullopt;  // nearly always
  std::optional<Time> next = KeyCounts();
  for (const std::optional<Time>& time : {eraseStep_, startEnd_}) {
    if (time && (!next || *time < *next)) next = time;
  }
  return next;
}

std::optional<Time> Terminal::OutputReady() const {
  if (output_.empty() || hostPauses_) return std::nullopt;
  return output_.front().ready;
}

unsigned char Terminal::TakeOutput() {
  const unsigned char byte = output_.front().byte;
  output_.pop_front();
  return byte;
}

void Terminal::ProcessWaiting() {
  while (!Busy() && !waiting_.empty()) {
    const unsigned char byte = waiting_.front();
    waiting_.pop_front();
    Process(byte);
  }
  FollowBuffer();
}

void Terminal::Process(unsigned char byte) {
  if (selected_) checksum_ = static_cast<std::uint16_t>(checksum_ + byte);
  parser_.Feed(byte, *this);
}

void Terminal::Send(std::string_view bytes) {
  if (setup_.fault == Fault::Silent) return;
  const bool late = setup_.fault == Fault::Late;
  const Time ready =
      std::max(now_, startEnd_.value_or(now_)) + (late                          ? kLate
                                                  : setup_.fault == Fault::Slow ? kSlow
                                                                                : Time::zero());
  for (const char byte : bytes) {
    const auto sent = static_cast<unsigned char>(byte);
    const bool garbled = setup_.fault == Fault::Garbled;
    output_.push_back({ready, garbled ? static_cast<unsigned char>(sent ^ kGarbling) : sent});
  }
}

void Terminal::Acknowledge(bool done) {
  const char answer = static_cast<char>(done ? kAck : kNak);
  Send({&answer, 1});
}

// ---- commands ----

void Terminal::OnText(unsigned char byte) {
  if (!selected_) return;
  const char character = static_cast<char>(byte);
  AddToLog(nullptr, {&character, 1});
  if (follower_ != nullptr) follower_->Prints(byte);
  screen_.PutText(byte);
}

void Terminal::OnGraphicText(unsigned char byte) {
  if (!selected_) return;
  if (!log_.empty() && log_.back().text.size() < kLogText) {
    log_.back().text += static_cast<char>(byte);
    ++logCount_;
  }
  if (follower_ != nullptr) follower_->PrintsGraphic(byte);
  screen_.PutGraphicText(byte);
}

void Terminal::OnCommand(const CommandRow& row, std::string_view text) {
  if (row.command == Command::SelectAddress) {
    AddToLog(&row, text);
    SelectAddress(text);
    return;
  }
  if (!selected_) return;
  AddToLog(&row, text);
  const Parameters parameters(text);
  if (parameters.Count() < row.parameters) return;
  if (follower_ != nullptr && !restoring_) follower_->Does(row, parameters);
  Execute(row, parameters);
}

// The bytes of a selection do not count in the checksum: a host that reads the sums of several
// Terminals one after the other could not predict them otherwise.
void Terminal::SelectAddress(std::string_view parameters) {
  if (selected_) {
    unsigned sum = kEsc + '!' + 'A' + ';';
    for (const char byte : parameters) sum += static_cast<unsigned char>(byte);
    checksum_ = static_cast<std::uint16_t>(checksum_ - sum);
  }
  const int address = Parameters(parameters).Number(0);
  selected_ = address == setup_.address || address == kAllAddresses;
}

void Terminal::Execute(const CommandRow& row, const Parameters& parameters) {
  if (screen_.Execute(row.command, parameters)) return;
  if (keyboards_.Execute(row.command, parameters)) return;
  const std::string echo = setup_.echoQueries ? std::string("\x1B").append(row.name) : "";
  if (row.reply == Reply::Acknowledge) {
    if (setup_.fault == Fault::Nak) {
      Acknowledge(false);
    } else if (row.command == Command::Erase || row.command == Command::EraseCounting) {
      StartErase(row.command == Command::EraseCounting);
    } else {
      Acknowledge(Store(row.command, parameters));
    }
  } else if (row.command == Command::AskInfo) {
    Send(echo + Information());
  } else if (const std::optional<std::string> answer = Answer(row.command)) {
    Send(echo + *answer + ";");
  } else {
    ExecuteSetting(row.command, parameters);
  }
}

void Terminal::ExecuteSetting(Command command, const Parameters& parameters) {
  switch (command) {
    case Command::SetPort:
      p0_ = static_cast<unsigned char>(parameters.Number(0) & 0xFF);
      break;
    case Command::SetResolution:
      SetResolution(parameters);
      break;
    case Command::Restart:
      Restart(true);
      break;
    case Command::SetInterface1:
      SetInterface(stagedInterface1_, parameters);
      break;
    case Command::SetBuffer1:
      SetBuffer(stagedInterface1_, parameters.Number(0));
      break;
    case Command::SetInterface2:
      SetInterface(interface2_, parameters);
      break;
    case Command::SetBuffer2:
      SetBuffer(interface2_, parameters.Number(0));
      break;
    case Command::SetReceive2:
      SetReceive2(parameters.Number(0));
      break;
    case Command::Send2:
      // The second interface is looped back: what goes out there comes in again.
      ReceiveInterface2(parameters.Text(), now_);
      break;
    case Command::ResetChecksum:
      checksum_ = 0;
      break;
    case Command::RunMacro:
      RunMacro(parameters.Number(0));
      break;
    default:
      break;
  }
}

std::optional<std::string> Terminal::Answer(Command query) const {
  switch (query) {
    case Command::AskVersion:
      return setup_.version + (setup_.flash ? "F" : "");
    case Command::AskAddress:
      // With its two letters in front: hosts read the number from the third character on.
      return std::string("?A") + std::to_string(setup_.address);
    case Command::AskPort:
      return std::to_string(p1_);
    case Command::AskFlash:
      return setup_.flash ? "64,4096" : "0,0";
    case Command::AskFreeBytes:
      return std::to_string(eeprom_.Free());
    case Command::AskChecksum:
      if (!setup_.checksum) return std::nullopt;
      return Checksum();
    default:
      break;
  }
  if (auto answer = screen_.Answer(query)) return answer;
  return keyboards_.Answer(query);
}

std::string Terminal::Checksum() const {
  char text[5];
  std::snprintf(text, sizeof text, "%X", checksum_);
  return text;
}

// Short on purpose: hosts collect it for 100 ms, which is 96 characters at 9600 baud.
std::string Terminal::Information() const {
  return std::string("Terminal ") + setup_.version + (setup_.flash ? "F" : "") + " Adr. " +
         std::to_string(setup_.address) + "\r\nDisplay " + std::to_string(resolution_.width) +
         " x " + std::to_string(resolution_.height) + "\r\nEEPROM " +
         std::to_string(eeprom_.Capacity()) + ", frei " + std::to_string(eeprom_.Free()) + "\r\n";
}

void Terminal::SetResolution(const Parameters& parameters) {
  stagedResolution_.width = std::clamp(parameters.Number(0), 20, 640);
  stagedResolution_.height = std::clamp(parameters.Number(1), 20, 480);
  stagedResolution_.option = std::string(parameters.Field(2).substr(0, 10));
}

// A rate that the hardware does not have leaves everything as it was.
void Terminal::SetInterface(InterfaceSettings& settings, const Parameters& parameters) {
  const int baud = parameters.Number(0);
  if (!IsRate(baud)) return;
  settings.baud = baud;
  settings.parity = std::clamp(parameters.Number(1), 0, 3);
  settings.bits = parameters.Number(2) == 7 ? 7 : 8;
  settings.stopBits = parameters.Number(3) == 2 ? 2 : 1;
  settings.handshake = parameters.Number(4) == 1 ? 1 : 0;
}

void Terminal::SetBuffer(InterfaceSettings& settings, int bytes) {
  settings.buffer = std::clamp(bytes, 1024, 16384);
}

// ---- log ----

void Terminal::AddToLog(const CommandRow* row, std::string_view text) {
  if (restoring_) return;
  ++logCount_;
  const bool goesOn = row == nullptr && !log_.empty() && log_.back().row == nullptr;
  if (goesOn && log_.back().text.size() < kLogText) {
    log_.back().text += text;
    return;
  }
  log_.push_back({row, std::string(text.substr(0, kLogText))});
  if (log_.size() > kLogEntries) log_.pop_front();
}

}  // namespace kelvo::sim
