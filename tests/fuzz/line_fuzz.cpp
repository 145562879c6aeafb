// Whatever comes over the line: what is no echo comes out unchanged, in whatever pieces it comes;
// each question ends in its time; and a capture that is read back is the same.

#include "bus/terminal_search.h"
#include "link/traffic_capture.h"
#include "link/traffic_words.h"
#include "tests/fakes/exchange_world.h"
#include "tests/fuzz/fuzz.h"

namespace kelvo::fuzz {
namespace {

using testing_world::ExchangeWorld;
using testing_world::milliseconds;
using testing_world::nanoseconds;

void BringBack(Input input) {
  EchoFilter whole;
  EchoFilter pieces;
  nanoseconds now{0};
  while (!input.Empty()) {
    const int what = input.Number(3);
    const auto number = static_cast<std::size_t>(input.Number(255));
    const std::string_view text = input.Text(number % 16);
    if (what == 0) {
      const nanoseconds lastBit = now + milliseconds(text.size());
      for (EchoFilter* filter : {&whole, &pieces}) filter->Written(text, now, lastBit);
    } else if (what == 1) {
      now += milliseconds(number);
      Promise(whole.Expire(now) == pieces.Expire(now));
    } else {
      const bool expected = whole.Expected();
      const std::string heard = whole.Arrived(text);
      std::string same;
      for (const char character : text) same += pieces.Arrived({&character, 1});
      Promise(heard == same && text.ends_with(heard) && (expected || heard == text));
    }
  }
}

// One text, its echo, and something behind it.
void BringBackOne(Input input) {
  const std::string sent(input.Text(static_cast<std::size_t>(input.Number(31))));
  const std::string answer(input.Rest());
  EchoFilter filter;
  filter.Written(sent, nanoseconds(0), nanoseconds(0));
  Promise(filter.Arrived(sent + answer) == answer);
}

const CommandName kQuestions[] = {CommandName::AskVersion, CommandName::AskAddress,
                                  CommandName::AskFreeBytes, CommandName::AskChecksum};

void Talk(Input input) {
  ExchangeWorld world;
  TrafficRecord record;
  world.port.SetTrafficListener([&](Direction direction, std::string_view characters) {
    record.Add(world.loop.WallClock(), direction, characters);
  });
  world.exchange.SetOutcomeListener(
      [&](const Outcome& outcome) { record.Note(world.loop.WallClock(), outcome); });
  while (!input.Empty()) {
    for (int pieces = input.Number(3); pieces > 0; --pieces) {
      const nanoseconds delay = milliseconds(5 * input.Number(255));
      world.port.ArriveAfter(delay, std::string(input.Text(std::size_t(input.Number(15)))));
    }
    const Command question(kQuestions[input.Number(3)]);
    const nanoseconds asked = world.loop.Now();
    Reply reply;
    switch (input.Number(3)) {
      case 0:
        reply = world.exchange.SendQuery(question);
        Promise(reply.kind != ReplyKind::Answered || reply.received.ends_with(';'));
        ReadAddressReply(3, reply);
        break;
      case 1:
        reply = world.exchange.SendQuickQuery(question, milliseconds(60));
        break;
      case 2:
        reply = world.exchange.SendString(WriteConfig());
        Promise(reply.kind != ReplyKind::Answered || reply.text.empty());
        break;
      default:
        reply = world.exchange.WaitAnswer("");
    }
    Promise(world.loop.Now() - asked < milliseconds(3600));
  }
  std::vector<TrafficRecord::Number> all;
  for (auto number = record.Begin(); number < record.End(); ++number) {
    all.push_back(number);
    TrafficWords(record, number);
    ResultWords(record, number);
  }
  const std::string capture = CaptureLines(record, all);
  const Capture again = ReadCapture(capture);
  Promise(again.notUnderstood == 0 && CaptureLines(again.record, all) == capture);
}

void ReadForeignCapture(Input input) {
  const Capture capture = ReadCapture(input.Rest());
  for (auto number = capture.record.Begin(); number < capture.record.End(); ++number) {
    TrafficWords(capture.record, number);
  }
}

}  // namespace
}  // namespace kelvo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo::fuzz;
  static constexpr decltype(&Talk) kParts[] = {BringBack, BringBackOne, Talk, ReadForeignCapture};
  Input input(data, size);
  const int part = input.Number(3);
  kParts[part](input);
  return 0;
}
