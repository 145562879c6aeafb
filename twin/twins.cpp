#include "twin/twins.h"

#include <algorithm>

#include "base/val.h"
#include "base/whole_val.h"
#include "link/addresses.h"
#include "link/answer_form.h"
#include "link/command_table.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

// Written faster than anybody looks; enough to catch up without being asked.
constexpr std::size_t kLongestBehind = 65536;
constexpr std::string_view kDigits = "0123456789";

bool SaysSomething(const sim::CommandRow& row) {
  using enum sim::Command;
  return row.reply != sim::Reply::Value && row.command != SelectAddress && row.command != AskInfo &&
         row.command != ResetChecksum && row.command != AskChecksum;
}

std::string WireText(const sim::CommandRow& row, std::string_view parameters) {
  std::string wire = "\x1B";
  wire.append(row.name).append(parameters);
  if (row.ending == sim::Ending::Semicolon) wire += ';';
  if (row.ending == sim::Ending::Etx) wire += static_cast<char>(sim::kEtx);
  return wire;
}

// What it would be dangerous to have received in part.
bool LeavesTraces(std::string_view text) {
  for (const std::string_view command : {"\x1B!",
                                         "\x1B"
                                         "E",
                                         "\x1BR",
                                         "\x1B"
                                         "2"}) {
    if (text.find(command) != std::string_view::npos) return true;
  }
  return false;
}

// Some repeat the question's letters in front. Where several answer at once anything may come.
std::optional<int> AddressIn(std::string_view values) {
  const std::string_view letters = RowOf(CommandName::AskAddress).letters;
  if (values.starts_with(letters)) values.remove_prefix(letters.size());
  if (values.empty() || values.find_first_not_of(kDigits) != std::string_view::npos) return {};
  const double value = Val(values);
  return value < kAllAddresses ? std::optional(static_cast<int>(value)) : std::nullopt;
}

// "Display 240 x 128" somewhere in a text.
std::optional<std::pair<int, int>> SizeIn(std::string_view text) {
  for (std::size_t cross = text.find(" x "); cross != std::string_view::npos;
       cross = text.find(" x ", cross + 1)) {
    const std::size_t before = text.find_last_not_of(kDigits, cross - 1);
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    const auto width = WholeVal(text.substr(start, cross - start));
    const auto height = WholeVal(text.substr(cross + 3, 4));
    if (width >= 20 && width <= 640 && height >= 20 && height <= 480) return {{width, height}};
  }
  return std::nullopt;
}

}  // namespace

Twins::Twins(LineWatch& line, SerialPort& port, const EventLoop& loop, Services services)
    : port_(port), loop_(loop), services_(std::move(services)) {
  nameless_ = MakeTwin({});
  line.FollowTraffic([this](Direction direction, std::string_view characters) {
    if (direction != Direction::ToTerminal) return;
    if (line_.size() > kLongestBehind) CatchUp();
    line_ += characters;
    Tell();
  });
  line.FollowOutcomes([this](const Outcome& outcome) {
    CatchUp();
    Settle(outcome);
    Tell();
  });
  line.FollowBreaks([this](LineBreak how) { Broken(how); });
}

std::unique_ptr<Twin> Twins::MakeTwin(std::optional<int> address) {
  sim::TerminalSetup setup{.address = address.value_or(kAllAddresses),
                           .eepromBytes = sim::Eeprom::kMaxCapacity};
  if (services_.size) std::tie(setup.width, setup.height) = services_.size();
  auto twin = std::make_unique<Twin>(setup, services_.fonts);
  TellMemory(*twin, address);
  return twin;
}

Twin& Twins::MakeOf(int address) {
  std::unique_ptr<Twin>& twin = twins_[address];
  if (twin == nullptr) twin = MakeTwin(address);
  return *twin;
}

void Twins::TellMemory(Twin& twin, std::optional<int> address) const {
  if (!services_.memory || lastPort_ == 0) return;
  for (const auto& [number, text] : services_.memory(address).makros) {
    twin.knowledge.Holds(number, text);
  }
}

void Twins::MemoryKnownAnew() {
  TellMemory(*nameless_, {});
  for (const auto& [address, twin] : twins_) TellMemory(*twin, address);
}

const Twin* Twins::Of(int address) const {
  const auto found = twins_.find(address);
  return found == twins_.end() ? nullptr : found->second.get();
}

const Twin* Twins::Present() const { return present_ ? Of(*present_) : nameless_.get(); }

void Twins::ForEach(const std::function<void(Twin&)>& act) {
  act(*nameless_);
  for (const auto& [address, twin] : twins_) act(*twin);
}

// ---- what is sent ----

void Twins::CatchUp() {
  const std::size_t left = std::min(line_.size(), port_.OutBufferCount());
  if (left == line_.size()) return;
  const std::string arrived = line_.substr(0, line_.size() - left);
  line_.erase(0, arrived.size());
  Feed(arrived);
}

void Twins::Feed(std::string_view characters) {
  for (const char character : characters) {
    ForEach([this, character](Twin& twin) { FeedTwin(twin, {&character, 1}); });
    parser_.Feed(static_cast<unsigned char>(character), *this);
  }
}

void Twins::FeedTwin(Twin& twin, std::string_view characters) const {
  sim::Terminal& terminal = twin.terminal;
  for (const char character : characters) {
    terminal.Receive(static_cast<unsigned char>(character), {});
    if (terminal.NextEvent()) terminal.Finish();
  }
  while (terminal.OutputReady()) terminal.TakeOutput();
  if (twin.beginnings == twin.knowledge.Beginnings()) return;
  twin.beginnings = twin.knowledge.Beginnings();
  twin.since = loop_.WallClock();
}

void Twins::OnCommand(const sim::CommandRow& row, std::string_view parameters) {
  if (row.command == sim::Command::SelectAddress) {
    return Selected(sim::Parameters(parameters).Number(0));
  }
  // The Terminals of the bus listen, all of them, though none was selected.
  if (row.command == sim::Command::Restart && listening_ == kAllAddresses) listening_.reset();
  if (SaysSomething(row)) SpokenTo(WireText(row, parameters));
}

void Twins::OnText(unsigned char byte) {
  const char character = static_cast<char>(byte);
  SpokenTo({&character, 1});
}

void Twins::Selected(int address) {
  listening_ = address;
  if (address == kAllAddresses) return nameless_->knowledge.Deafen(TwinDoubt::AllSelected);
  if (address != kClosingAddress || Of(address) != nullptr) present_ = address;
}

// A search asks under many addresses; those that are only asked and do not answer need no model.
void Twins::SpokenTo(std::string_view command) {
  if (!listening_ || listening_ == kAllAddresses || Of(*listening_) != nullptr) return;
  if (listening_ != kClosingAddress) FeedTwin(MakeOf(*listening_), command);
}

void Twins::Broken(LineBreak how) {
  CatchUp();
  const std::string cut = std::exchange(line_, {});
  parser_.Reset();
  const bool deaf = how == LineBreak::SetAnew || LeavesTraces(cut);
  const TwinDoubt doubt =
      how == LineBreak::SetAnew ? TwinDoubt::LineSetAnew : TwinDoubt::SendingCut;
  ForEach([&](Twin& twin) {
    if (!deaf && !twin.terminal.Selected()) return;
    deaf ? twin.knowledge.Deafen(doubt) : twin.knowledge.Forget(doubt);
    twin.terminal.DropCommand();
  });
  Tell();
}

// ---- what is answered ----

// Whose answer it is; null where that cannot be told.
Twin* Twins::Answerer(const Outcome& outcome) {
  if (!listening_) return nameless_.get();
  if (listening_ == kAllAddresses) return nullptr;
  const ReplyKind kind = outcome.reply.kind;
  const bool there = kind == ReplyKind::Answered || kind == ReplyKind::Refused;
  if (there) return &MakeOf(*listening_);
  const auto found = twins_.find(*listening_);
  return found == twins_.end() ? nullptr : found->second.get();
}

void Twins::SettleSilence() {
  ForEach([this](Twin& twin) {
    const bool asked = !listening_ || listening_ == kAllAddresses || Of(*listening_) == &twin;
    // One that has handed over has no reason to answer.
    if (asked && twin.terminal.Selected()) twin.knowledge.Deafen(TwinDoubt::Silent);
  });
}

void Twins::Settle(const Outcome& outcome) {
  const ReplyKind kind = outcome.reply.kind;
  const CommandRow* const last = LastCommand(outcome.sent);
  if (kind == ReplyKind::PortClosed || last == nullptr || last->answer == Answer::None) return;
  if (kind == ReplyKind::Silent) return SettleSilence();
  Twin* const twin = Answerer(outcome);
  if (twin == nullptr) return;
  Knowledge& knowledge = twin->knowledge;
  const bool whole = kind == ReplyKind::Answered || kind == ReplyKind::Refused;
  if (!whole || !outcome.reply.readable) {
    return knowledge.Deafen(TwinDoubt::Garbled);
  }
  if (!twin->terminal.Selected()) {
    knowledge.Deafen(TwinDoubt::OtherAnswer);
    FeedTwin(*twin, "\x1B!A255;");
  }
  knowledge.Heard();
  twin->answered = loop_.WallClock();
  Answered(*twin, outcome, last->name);
}

void Twins::Answered(Twin& twin, const Outcome& outcome, CommandName asked) {
  const Reply& reply = outcome.reply;
  const bool refused = reply.kind == ReplyKind::Refused;
  if (refused || reply.received.find(kAck) != std::string::npos) {
    twin.knowledge.Acknowledged(outcome.sent, !refused);
  }
  if (refused) return;
  const std::string_view values = ValuesBehind(outcome.sent, reply.text);
  if (asked == CommandName::AskSystemInfo) {
    const auto size = SizeIn(reply.text);
    if (size) twin.knowledge.SizeTold(size->first, size->second);
  } else if (asked == CommandName::AskAddress) {
    const auto address = AddressIn(values);
    if (address) Told(*address);
  } else {
    twin.knowledge.Answered(outcome.sent, values);
  }
}

void Twins::Told(int address) {
  if (listening_) {
    // Somebody else has misheard the selection.
    if (listening_ != address) MakeOf(*listening_).knowledge.Deafen(TwinDoubt::OtherAnswer);
    return;
  }
  const bool others = std::any_of(twins_.begin(), twins_.end(), [address](const auto& other) {
    return other.first != address && other.second->terminal.Selected();
  });
  if (others) return;
  if (Of(address) == nullptr) {
    nameless_->terminal.SetAddress(address);
    TellMemory(*nameless_, address);
    twins_[address] = std::move(nameless_);
    nameless_ = MakeTwin({});
  } else {
    twins_[address]->knowledge.Heard();
    nameless_->knowledge.Deafen(TwinDoubt::NeverAnswered);
  }
  FeedTwin(*nameless_, "\x1B!A0;");
  listening_ = present_ = address;
}

// ---- the port ----

void Twins::PortIs(int number) {
  if (number == 0) return;
  const int before = std::exchange(lastPort_, number);
  const bool lost = std::exchange(lost_, false);
  if (before != 0 && before != number) {
    DropAll();
  } else if (lost) {
    listening_.reset();
    present_.reset();
    nameless_ = MakeTwin({});
    nameless_->knowledge.Deafen(TwinDoubt::LineLost);
  }
  // Whose EEPROM is meant is known with the port.
  if (lost || before == 0) MemoryKnownAnew();
  Tell();
}

// Behind a device that comes back may be others.
void Twins::PortLost() {
  lost_ = true;
  line_.clear();
  parser_.Reset();
  ForEach([](Twin& twin) {
    twin.knowledge.Deafen(TwinDoubt::LineLost);
    twin.knowledge.ForgetMemory();
  });
  Tell();
}

void Twins::DropAll() {
  line_.clear();
  parser_.Reset();
  twins_.clear();
  listening_.reset();
  present_.reset();
  nameless_ = MakeTwin({});
}

void Twins::Tell() const {
  if (listener_) listener_();
}

}  // namespace kelvo
