#include "bus/transfer.h"

#include <algorithm>
#include <cstdio>

#include "base/wire_text.h"
#include "link/commands.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// The rate at which a Terminal is taken to be through with what it has received.
constexpr int kCharactersPerSecond = 3000;
// A Terminal whose good answer has not come may still give it (another one may have answered in
// its place), and then must not be taken for the next one that is asked.
constexpr milliseconds kOverdueAnswer{1000};

std::string Count(long number, const char* one, const char* many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

}  // namespace

std::string TransferPayload(std::string_view drawing) {
  return Sequence({ClearDisplay(), CursorOffForDrawing()}).append(drawing);
}

std::uint16_t ExpectedChecksum(std::string_view payload) {
  std::string received(payload);
  received += AskChecksum().Text();
  return static_cast<std::uint16_t>(StringSum(received));
}

std::optional<std::uint16_t> ReadChecksum(std::string_view reply) {
  const bool isHex = reply.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
  if (!isHex || reply.empty() || reply.size() > 4) return std::nullopt;
  return static_cast<std::uint16_t>(std::stoul(std::string(reply), nullptr, 16));
}

std::string ChecksumText(std::uint16_t sum) {
  char text[5];
  std::snprintf(text, sizeof text, "%04X", sum);
  return text;
}

std::string TransferStateText(const TransferEntry& entry) {
  switch (entry.state) {
    case TransferState::None:
      return {};
    case TransferState::Waiting:
      return "wartet";
    case TransferState::Open:
      return "offen";
    case TransferState::Sending:
      return "sendet, " + std::to_string(entry.percent) + " %";
    case TransferState::Cut:
      return "abgebrochen, nur zum Teil gesendet";
    case TransferState::Unproven:
      return "gesendet, nicht geprüft";
    case TransferState::Sent:
      return "gesendet, keine Prüfung möglich";
    case TransferState::Checking:
      return "prüft";
    case TransferState::Good:
      return "gut, Prüfsumme " + ChecksumText(entry.expected);
    case TransferState::NoAnswer:
      return "keine Antwort";
    case TransferState::WrongSum:
      break;
  }
  const std::optional<std::uint16_t> sum = ReadChecksum(entry.answer);
  return "falsche Prüfsumme: " +
         (sum ? ChecksumText(*sum) : "\"" + ReadableText(entry.answer) + "\"") + " statt " +
         ChecksumText(entry.expected);
}

std::string TransferSummary(const std::vector<TransferEntry>& entries) {
  const auto count = [&entries](TransferState state) {
    return std::count_if(entries.begin(), entries.end(),
                         [state](const TransferEntry& entry) { return entry.state == state; });
  };
  std::string text = std::to_string(count(TransferState::Good)) + " gut, " +
                     std::to_string(count(TransferState::WrongSum)) + " falsch, " +
                     std::to_string(count(TransferState::NoAnswer)) + " ohne Antwort";
  if (const auto sent = count(TransferState::Sent)) {
    text += ", " + Count(sent, "Terminal", "Terminals") + " ohne Prüfung";
  }
  if (const auto cut = count(TransferState::Cut)) {
    text += ", " + std::to_string(cut) + " nur zum Teil";
  }
  if (const auto unproven = count(TransferState::Unproven)) {
    text += ", " + std::to_string(unproven) + " nicht geprüft";
  }
  if (const auto open = count(TransferState::Open)) {
    text += ", " + std::to_string(open) + " offen";
  }
  return text + ".";
}

/// One transfer under way.
class Transfer::Run {
 public:
  Run(Transfer& transfer, std::vector<TransferEntry>& entries, std::string payload,
      const Listener& listener)
      : transfer_(transfer),
        exchange_(transfer.exchange_),
        loop_(transfer.loop_),
        entries_(entries),
        payload_(std::move(payload)),
        expected_(ExpectedChecksum(payload_)),
        listener_(listener) {}

  void ToAll();
  void OneByOne();
  void Close();

 private:
  bool GoesOn() const { return !transfer_.stopping_ && exchange_.Alive(); }
  std::vector<std::size_t> Ticked() const;
  void Begin();
  void Change(const std::vector<std::size_t>& which, TransferState state, int percent = 0);
  void ToOne(std::size_t index);
  bool SendPayload(const std::vector<std::size_t>& receivers);
  void FinishCommand(std::size_t written);
  void WaitForTerminals();
  void WaitUntil(nanoseconds end);
  void Check(std::size_t index);
  void Send(std::string_view text);

  const Transfer& transfer_;
  Exchange& exchange_;
  EventLoop& loop_;
  std::vector<TransferEntry>& entries_;
  const std::string payload_;
  const std::uint16_t expected_;
  const Listener& listener_;
  nanoseconds writtenAt_{0};
};

void Transfer::SendRS485(std::vector<TransferEntry>& entries, std::string_view drawing,
                         const Listener& listener) {
  stopping_ = false;
  const bool all = std::all_of(entries.begin(), entries.end(),
                               [](const TransferEntry& entry) { return entry.ticked; });
  Run run(*this, entries, TransferPayload(drawing), listener);
  if (all) {
    run.ToAll();
  } else {
    run.OneByOne();
  }
  run.Close();
}

void Transfer::Run::Close() {
  Send(SelectAddress(kClosingAddress).Text());
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].state == TransferState::Waiting) open.push_back(i);
  }
  Change(open, TransferState::Open);
}

std::vector<std::size_t> Transfer::Run::Ticked() const {
  std::vector<std::size_t> ticked;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].ticked) ticked.push_back(i);
  }
  return ticked;
}

void Transfer::Run::Change(const std::vector<std::size_t>& which, TransferState state,
                           int percent) {
  for (const std::size_t index : which) {
    entries_[index].state = state;
    entries_[index].percent = percent;
    listener_(index);
  }
}

void Transfer::Run::OneByOne() {
  const std::vector<std::size_t> ticked = Ticked();
  Change(ticked, TransferState::Waiting);
  for (const std::size_t index : ticked) {
    loop_.ProcessPending();  // a wish to stop
    if (!GoesOn()) return;
    ToOne(index);
  }
}

void Transfer::Run::ToOne(std::size_t index) {
  TransferEntry& entry = entries_[index];
  Send(Sequence({SelectAddress(entry.address), ResetChecksum()}));
  if (!SendPayload({index})) return;
  if (!entry.checksum) {
    entry.ticked = false;
    return Change({index}, TransferState::Sent);
  }
  WaitForTerminals();
  transfer_.stopping_ ? Change({index}, TransferState::Unproven) : Check(index);
}

void Transfer::Run::ToAll() {
  const std::vector<std::size_t> ticked = Ticked();
  Change(ticked, TransferState::Waiting);
  Send(Sequence({SelectAddress(kAllAddresses), ResetChecksum()}));
  if (!SendPayload(ticked)) return;
  Send(SelectAddress(kClosingAddress).Text());
  writtenAt_ = loop_.Now();
  WaitForTerminals();
  if (!exchange_.Alive()) return Change(ticked, TransferState::NoAnswer);
  std::vector<std::size_t> asked;
  for (const std::size_t index : ticked) {
    if (entries_[index].checksum) {
      asked.push_back(index);
    } else {
      entries_[index].ticked = false;
      Change({index}, TransferState::Sent);
    }
  }
  Change(asked, TransferState::Unproven);
  for (const std::size_t index : asked) {
    if (!GoesOn()) return;
    Send(SelectAddress(entries_[index].address).Text());
    Check(index);
  }
}

// In the pieces of the exchange, so that the event loop is served while each is on the line. False
// when it has ended before the end, and with which state.
bool Transfer::Run::SendPayload(const std::vector<std::size_t>& receivers) {
  std::size_t written = 0;
  const auto showProgress = [&](std::size_t left) {
    const std::size_t gone = written - std::min(written, left);
    Change(receivers, TransferState::Sending, static_cast<int>(100 * gone / payload_.size()));
  };
  while (written < payload_.size() && GoesOn()) {
    const std::string piece = payload_.substr(written, kPieceLength);
    exchange_.WaitUntilSentYielding(showProgress);
    if (!GoesOn()) break;
    Send(piece);
    written += piece.size();
  }
  const bool complete = written == payload_.size();
  if (!complete) FinishCommand(written);
  writtenAt_ = loop_.Now();
  exchange_.WaitUntilSentYielding(showProgress);
  if (!exchange_.Alive()) {
    Change(receivers, TransferState::NoAnswer);
  } else if (!complete) {
    Change(receivers, TransferState::Cut);
  }
  return complete && exchange_.Alive();
}

// A Terminal in the middle of a command would take the closing selection for a part of it.
void Transfer::Run::FinishCommand(std::size_t written) {
  const std::size_t next = std::min(payload_.find(kEsc, written), payload_.size());
  if (next > written) Send(std::string_view(payload_).substr(written, next - written));
}

// Counts from the moment when the last text was handed to the line.
void Transfer::Run::WaitForTerminals() {
  const auto characters = static_cast<nanoseconds::rep>(payload_.size());
  const nanoseconds second = std::chrono::seconds(1);
  WaitUntil(writtenAt_ + second * characters / kCharactersPerSecond);
}

void Transfer::Run::WaitUntil(nanoseconds end) {
  while (loop_.Now() < end && GoesOn()) loop_.WaitForEvent(end - loop_.Now());
}

void Transfer::Run::Check(std::size_t index) {
  TransferEntry& entry = entries_[index];
  entry.expected = expected_;
  Change({index}, TransferState::Checking);
  exchange_.WaitUntilSentYielding();
  const nanoseconds asked = loop_.Now();
  const Reply reply = exchange_.SendQuery(AskChecksum());
  const bool answered = !reply.Failed();
  entry.answer = answered ? reply.text : std::string();
  const bool good = answered && ReadChecksum(entry.answer) == expected_;
  if (good) entry.ticked = false;
  Change({index}, good       ? TransferState::Good
                  : answered ? TransferState::WrongSum
                             : TransferState::NoAnswer);
  if (!good) WaitUntil(asked + kOverdueAnswer);
}

void Transfer::Run::Send(std::string_view text) {
  exchange_.WaitUntilSentYielding();
  exchange_.SendString(text);
}

}  // namespace kelvo
