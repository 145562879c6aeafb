#include "bus/quick_search.h"

#include <algorithm>
#include <utility>

#include "link/intervals.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kShortestWait{60};
// Each costs half a second.
constexpr std::size_t kMostInGaps = 8;

milliseconds WaitFor(nanoseconds slowest) {
  const auto wait = std::chrono::duration_cast<milliseconds>(slowest * 3 / 2);
  return std::clamp(wait, kShortestWait, kQueryInterval);
}

}  // namespace

QuickSearch::QuickSearch(Services services)
    : services_(std::move(services)),
      search_({services_.exchange, services_.state, services_.reopenPort}) {}

TerminalSearch::End QuickSearch::Run(int last, double checksumFrom,
                                     const TerminalSearch::Listener& listener) {
  listener_ = listener;
  checksumFrom_ = checksumFrom;
  results_.clear();
  asked_.clear();
  slowest_ = Time(0);
  stray_ = stopping_ = false;
  connected_ = services_.reopenPort();
  dropped_ = services_.com1.CharactersDropped();
  for (int address = 0; connected_ && address <= last && !stopping_; ++address) Pass(address);
  if (connected_ && !stopping_) AwaitStray();
  if (connected_ && !stopping_) AskGapsAgain();
  services_.com1.SetReceiveThreshold(1);
  services_.exchange.SetInterval(kUsualInterval);
  if (!connected_) return TerminalSearch::End::LineLost;
  return stopping_ ? TerminalSearch::End::Stopped : TerminalSearch::End::Complete;
}

void QuickSearch::Pass(int address) {
  Exchange& exchange = services_.exchange;
  SearchResult result;
  result.address = address;
  NoteStray();
  const EchoCheck echo(exchange);
  exchange.SendString(SelectAddress(address).Text(), Pending::Discard);
  exchange.WaitUntilSent();
  NoteStray();
  lastAsked_ = services_.loop.Now();
  const Reply reply = exchange.SendQuickQuery(AskAddress(), WaitFor(slowest_));
  result.took = exchange.LastWait();
  asked_.push_back(services_.loop.Now() - result.took);
  result.reply = reply.text;
  result.received = reply.received;
  result.heard = ReadAddressReply(address, reply);
  result.echoed = echo.Came();
  NoteStray();
  if (result.heard == Heard::Itself) {
    search_.ShowFound(address);
    NoteStray();
    search_.ReadVersionOf(result, checksumFrom_);
    Took(result.took);
    NoteStray();
  }
  connected_ = exchange.Alive();
  if (!connected_) return;  // nothing is known about this address
  results_.push_back(result);
  listener_(result);
  if (Doubtful(result)) AskDoubtfulAgain();
}

// Nothing may come at this time; an answer that does belongs to an address before. No receive event
// may take it away. What comes between this and the next text is dropped by that.
void QuickSearch::NoteStray() {
  SerialPort& com1 = services_.com1;
  com1.SetReceiveThreshold(0);
  const Time now = services_.loop.Now();
  const std::size_t before = std::exchange(dropped_, com1.CharactersDropped());
  if (com1.InBufferCount() > 0 || dropped_ > before) stray_ = true;
  if (!stray_) quiet_ = now;
}

bool QuickSearch::Doubtful(const SearchResult& result) const {
  return stray_ || (!result.Found() && result.heard != Heard::Silence);
}

void QuickSearch::Took(Time time) { slowest_ = std::max(slowest_, time); }

// The last answers may be late, too.
void QuickSearch::AwaitStray() {
  EventLoop& loop = services_.loop;
  NoteStray();
  const Time end = loop.Now() + kQueryInterval;
  while (!stray_ && loop.Now() < end && services_.exchange.Alive()) {
    loop.WaitForEvent(end - loop.Now());
    NoteStray();
  }
  connected_ = services_.exchange.Alive();
  if (connected_ && stray_) AskDoubtfulAgain();
}

void QuickSearch::AskDoubtfulAgain() {
  EventLoop& loop = services_.loop;
  const Time now = loop.Now();
  // What has come belongs to an address that was asked shortly before that, or to the last one.
  // When it has come is known no better than since the line was quiet: a busy machine looks rarely.
  const Time since = std::min(lastAsked_, quiet_) - kQueryInterval;
  std::vector<int> doubtful;
  for (std::size_t i = 0; i < results_.size(); ++i) {
    // One that was found may have been taken for another that is late, if there is an answer too
    // many.
    if (asked_[i] >= since && (stray_ || !results_[i].Found()))
      doubtful.push_back(static_cast<int>(i));
  }
  const Time quiet = now + kQueryInterval;
  while (loop.Now() < quiet && services_.exchange.Alive()) loop.WaitForEvent(quiet - loop.Now());
  services_.com1.DiscardInput();
  stray_ = false;
  for (const int address : doubtful) AskAgain(address);
  dropped_ = services_.com1.CharactersDropped();
  quiet_ = loop.Now();
}

void QuickSearch::AskAgain(int address) {
  if (!connected_ || stopping_) return;
  const auto result = search_.Visit(address, checksumFrom_);
  connected_ = result && services_.exchange.Alive();
  if (!result) return;
  if (!result->Absent()) Took(result->took);
  const auto index = static_cast<std::size_t>(address);
  results_[index] = *result;
  asked_[index] = Time::min();  // in the usual way: nothing about it is doubtful any more
  listener_(*result);
}

// The absent addresses between present ones, those of the narrowest gaps first.
std::vector<int> QuickSearch::Gaps() const {
  std::vector<std::pair<int, int>> gaps;  // width, first address
  int before = -1;
  for (const SearchResult& result : results_) {
    if (!result.Found()) continue;
    if (before >= 0 && result.address > before + 1) {
      gaps.emplace_back(result.address - before - 1, before + 1);
    }
    before = result.address;
  }
  std::sort(gaps.begin(), gaps.end());
  std::vector<int> addresses;
  for (const auto& [width, first] : gaps) {
    for (int address = first; address < first + width; ++address) {
      const auto& result = results_[static_cast<std::size_t>(address)];
      if (result.heard == Heard::Silence) addresses.push_back(address);
    }
  }
  if (addresses.size() > kMostInGaps) addresses.resize(kMostInGaps);
  return addresses;
}

void QuickSearch::AskGapsAgain() {
  for (const int address : Gaps()) AskAgain(address);
}

}  // namespace kelvo
