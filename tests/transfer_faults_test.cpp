#include <gtest/gtest.h>

#include <random>

#include "bus/transfer.h"
#include "tests/fakes/bus_world.h"
#include "tests/fire/fire_count.h"
#include "tests/test_fonts.h"

namespace kelvo {
namespace {

using sim::Fault;
using testing_world::BusWorld;
using testing_world::milliseconds;

/// Draws reproducible choices.
class Dice {
 public:
  int Number(int least, int most) {
    return least + static_cast<int>(engine_() % static_cast<unsigned>(most - least + 1));
  }
  bool OneIn(int number) { return Number(1, number) == 1; }

 private:
  std::mt19937 engine_{20240611};
};

std::string Numbers(Dice& dice, std::initializer_list<std::pair<int, int>> ranges) {
  std::string numbers;
  for (const auto& [least, most] : ranges) {
    numbers += (numbers.empty() ? "" : ",") + std::to_string(dice.Number(least, most));
  }
  return numbers + ";";
}

// A text with all of its style, as a drawing has it.
std::string RandomText(Dice& dice) {
  std::string text = "\x1bGF" + Numbers(dice, {{0, 9}});
  text += "\x1bGZ" + Numbers(dice, {{1, 2}, {1, 2}}) + "\x1bGA" + Numbers(dice, {{0, 7}});
  return text + "\x1bGT" + static_cast<char>(dice.Number('0', 'z')) + "\x04";
}

// A picture of 12 x 2 pixels.
std::string RandomPicture(Dice& dice) {
  std::string picture = "\x1bGB" + Numbers(dice, {{0, 39}, {0, 29}});
  picture.back() = ',';
  picture += "-12,2,";
  for (int i = 0; i < 8; ++i) picture += "0123456789ABCDEF"[dice.Number(0, 15)];
  return picture + ";";
}

// What a drawing is made of, in the pen that stands at its beginning or another one.
std::string RandomDrawing(Dice& dice) {
  static const char* const shapes[] = {"GR", "GfR", "GL", "GfE", "GE"};
  std::string drawing;
  for (int i = dice.Number(0, 8); i > 0; --i) {
    if (dice.OneIn(4)) drawing += dice.OneIn(2) ? "\x1bGM0;" : "\x1bGM1;";
    if (dice.OneIn(8)) {
      drawing += RandomPicture(dice);
      continue;
    }
    drawing += "\x1bGP" + Numbers(dice, {{0, 39}, {0, 29}});
    if (dice.OneIn(5)) {
      drawing += RandomText(dice);
    } else {
      drawing += std::string("\x1b") + shapes[dice.Number(0, 4)];
      drawing += Numbers(dice, {{0, 39}, {0, 29}});
    }
  }
  return drawing;
}

void Hear(sim::Terminal& terminal, std::string_view text, BusWorld& world) {
  for (const char c : text) terminal.Receive(static_cast<unsigned char>(c), world.loop.Now());
}

// What others have left in a Terminal: a drawing, a text layer with its style and a cursor,
// another one selected, a command that was cut short.
void Use(sim::Terminal& terminal, Dice& dice, BusWorld& world) {
  const sim::Fault fault = terminal.Setup().fault;
  terminal.SetFault(Fault::None);
  Hear(terminal, RandomDrawing(dice) + RandomText(dice), world);
  Hear(terminal, "\x1bTM" + Numbers(dice, {{0, 3}}) + "\x1bTA" + Numbers(dice, {{0, 7}}), world);
  Hear(terminal, "\x1b!C" + Numbers(dice, {{0, 6}}) + "text\x1bGM1;", world);
  static const char* const lasts[] = {"", "\x1b!A254;", "\x1bGL3", "\x1bGTcut", "\x1bGB0,0,1,1,F"};
  Hear(terminal, lasts[dice.Number(0, 4)], world);
  terminal.SetFault(fault);
}

sim::TerminalSetup RandomTerminal(Dice& dice, int address) {
  static constexpr Fault kFaults[] = {Fault::Silent, Fault::Garbled, Fault::Late, Fault::Slow,
                                      Fault::Drops,  Fault::Doubles, Fault::Flips};
  sim::TerminalSetup setup;
  setup.address = address;
  setup.width = 40;
  setup.height = 30;
  if (dice.OneIn(2)) {
    setup.fault = kFaults[dice.Number(0, 6)];
    setup.faultEvery = dice.Number(5, 200);
  }
  return setup;
}

/// What becomes of one transfer.
struct Outcome {
  int good = 0;       ///< shown as good
  int equalSums = 0;  ///< of these, with another display but an equal sum
  int mistaken = 0;   ///< of these, with another display, because another Terminal has answered
                      ///< that misheard who is selected, which no sum can tell
  int lies = 0;       ///< of these, with another display for any other reason
};

/// One line with a few Terminals, some of which misbehave, and one drawing sent to them.
class Delivery {
 public:
  explicit Delivery(Dice& dice) : drawing_(RandomDrawing(dice)) {
    int address = 0;
    for (int count = dice.Number(1, 4); count > 0; --count) {
      address += dice.Number(1, 40);
      AddTerminal(dice, address);
    }
    world_.line.line.SetEcho(dice.OneIn(3));
    if (dice.OneIn(20)) {
      world_.loop.After(milliseconds(dice.Number(1, 400)), [this] { world_.port.Lose(); });
    }
    reference_.PowerOn(world_.loop.Now());
    Hear(reference_, TransferPayload(drawing_), world_);
  }

  Outcome Send() {
    Transfer transfer(world_.exchange, world_.loop);
    transfer.SendRS485(entries_, drawing_, [this](std::size_t index) {
      const TransferState state = entries_[index].state;
      if (state == TransferState::Checking) right_[index] = ShowsTheDrawing(index);
      if (state == TransferState::Good) Judge(index);
    });
    return outcome_;
  }

 private:
  void AddTerminal(Dice& dice, int address) {
    sim::Terminal& terminal = *world_.line.bus.Add(RandomTerminal(dice, address), TestFonts());
    terminal.PowerOn(world_.loop.Now());
    if (!dice.OneIn(3)) Use(terminal, dice, world_);
    TransferEntry entry;
    entry.address = address;
    entry.checksum = !dice.OneIn(8);
    entry.ticked = !dice.OneIn(6);
    entries_.push_back(entry);
    right_.push_back(false);
  }

  bool ShowsTheDrawing(std::size_t index) {
    return world_.At(index).Display().Pixels() == reference_.Display().Pixels();
  }

  void Judge(std::size_t index) {
    ++outcome_.good;
    if (right_[index]) return;
    const bool mishears = world_.At(index).Setup().fault >= Fault::Drops;
    if (mishears && Answers(index)) {
      ++outcome_.equalSums;
    } else {
      ++(AnotherAnswers(index) ? outcome_.mistaken : outcome_.lies);
    }
  }

  // Whether the Terminal takes itself for selected and has answered with the sum. The end of the
  // question, heard twice, counts behind the answer.
  bool Answers(std::size_t index) {
    const sim::Terminal& terminal = world_.At(index);
    const int more = terminal.ChecksumNow() - ExpectedChecksum(TransferPayload(drawing_));
    const bool doubled = more == '?' && terminal.Setup().fault == Fault::Doubles;
    return terminal.Selected() && (more == 0 || doubled);
  }

  bool AnotherAnswers(std::size_t asked) {
    for (std::size_t other = 0; other < entries_.size(); ++other) {
      if (other != asked && Answers(other)) return true;
    }
    return false;
  }

  BusWorld world_;
  std::string drawing_;
  sim::Terminal reference_{{.width = 40, .height = 30}, TestFonts()};
  std::vector<TransferEntry> entries_;
  std::vector<bool> right_;  // the display when the Terminal is asked: later it may change again
  Outcome outcome_;
};

// More of it: KELVO_FIRE=10000 transfers.
TEST(TransferWithFaults, NoTerminalIsShownAsGoodThatIsNotOtherThanByAnEqualSum) {
  const int transfers = testing_world::FireCount(2500);
  Dice dice;
  Outcome all;
  for (int i = 0; i < transfers; ++i) {
    const Outcome outcome = Delivery(dice).Send();
    EXPECT_EQ(outcome.lies, 0) << "transfer " << i;
    all.good += outcome.good;
    all.equalSums += outcome.equalSums;
    all.mistaken += outcome.mistaken;
  }
  std::printf("%d transfers: %d Terminals shown as good, %d by an equal sum alone, %d mistaken\n",
              transfers, all.good, all.equalSums, all.mistaken);
  EXPECT_GT(all.good, transfers / 2);
  EXPECT_LT(all.equalSums, all.good / 20);
  EXPECT_LE(all.mistaken, 2 + transfers / 10'000);
}

}  // namespace
}  // namespace kelvo
