// The program behind a line that is struck: what the operator is told is held to what the Terminals
// hold and to what really went over the wires. More of it: KELVO_FIRE=100000 exchanges; the same
// again: KELVO_FIRE_SEED.

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "tests/fire/fire_actions.h"

namespace kelvo::fire {
namespace {

int FromOutside(const char* name, int usual) {
  const char* const value = std::getenv(name);
  return value != nullptr ? std::atoi(value) : usual;
}

// A few of them are shown; the first is the one to look at.
constexpr int kMostFailures = 6;

std::vector<FireProgram::Action> AllActions() {
  std::vector<FireProgram::Action> all = Script();
  all.insert(all.end(), BusScript().begin(), BusScript().end());
  return all;
}

TEST(WireFire, EveryActionIsToldRightOnAGoodLine) {
  FireProgram program({3, 5});
  for (const FireProgram::Action& action : AllActions()) program.Do(action, {}, "good line");
  std::cout << "good line: " << program.tally.Line() << '\n';
  EXPECT_EQ(program.tally.strikes, 0);
}

const FireProgram::Action& Named(const std::string& name) {
  const auto& script = Script();
  return *std::find_if(script.begin(), script.end(),
                       [&name](const FireProgram::Action& action) { return name == action.name; });
}

// The acknowledge of one command comes at any moment of the next one, which is refused.
TEST(WireFire, LateAcknowledgeIsNotTakenForTheOneOfARefusedCommand) {
  FireProgram program({3});
  program.rest = milliseconds(0);
  // Two seconds are waited for it, and the next command follows 700 ms later.
  for (unsigned late = 2650; late < 2800; late += 2) {
    program.Do(Named("delete config"), {{Way::ToHost, 0, Kind::Delay, late}}, "late acknowledge");
    program.Do(Named("delete refused macro"), {}, std::to_string(late) + " ms late");
    EXPECT_FALSE(program.Noted("Makro 7 gelöscht")) << late;
    program.Recover();
  }
  std::cout << "late acknowledge: " << program.tally.Line() << '\n';
}

// Two answer at once, or nobody understands: nothing is told that does not stand in the Terminal.
TEST(WireFire, TwoAtOneAddressAndAnotherRateMakeNoFalseWord) {
  FireProgram two({3, 3});
  two.At(1).SetVersion("1.90", false);
  two.At(1).SetP1(170);
  FireProgram otherRate({3}, 1, 9600);
  for (FireProgram* const program : {&two, &otherRate}) {
    for (const FireProgram::Action& action : AllActions()) {
      program->Do(action, {}, "strange line");
      program->Recover();
    }
    std::cout << "strange line: " << program->tally.Line() << '\n';
  }
}

// Five kinds at each character, both ways.
TEST(WireFire, FaultAtAnyCharacterMakesNoFalseWord) {
  constexpr Kind kKinds[] = {Kind::Drop, Kind::Double, Kind::Flip, Kind::Insert, Kind::Silence};
  const std::size_t step = std::getenv("KELVO_FIRE") != nullptr ? 1 : 11;
  const auto start = static_cast<std::size_t>(FromOutside("KELVO_FIRE_SEED", 0));
  std::size_t number = start;
  FireProgram program({3});
  for (const FireProgram::Action& action : Script()) {
    const auto [out, in] = program.Lengths(action);
    for (std::size_t at = 0; at < out + in && program.tally.failures < kMostFailures; ++at) {
      for (const Kind kind : kKinds) {
        if (++number % step != 0) continue;
        const Strike strike{at < out ? Way::ToTerminals : Way::ToHost, at < out ? at : at - out,
                            kind, kind == Kind::Silence ? 60'000U : unsigned(number * 7 % 256)};
        program.Do(action, {strike}, "fault at a character");
        program.Recover();
      }
    }
  }
  std::cout << "every character, start value " << start << ": " << program.tally.Line() << '\n';
}

/// Random uses of one program.
class RandomUse {
 public:
  explicit RandomUse(unsigned start) : random_(start), program_(Addresses(), start) {
    program_.Line().Wires().SetEcho(Chance(20));
  }

  /// In the middle of many actions the operator does something else.
  void BeInHaste() { haste_ = true; }
  /// `faults`: of a hundred actions so many are struck.
  Tally Actions(int count, int faults, const std::string& where) {
    const std::vector<FireProgram::Action> all = AllActions();
    for (int i = 0; i < count && program_.tally.failures == 0; ++i) {
      program_.rest = milliseconds(Number(0, 2500));
      std::vector<Strike> strikes;
      for (int n = Chance(faults) ? Number(1, 3) : 0; n > 0; --n) strikes.push_back(Any());
      if (haste_ && Chance(60)) Meanwhile();
      program_.Do(all[static_cast<std::size_t>(Number(0, static_cast<int>(all.size()) - 1))],
                  strikes, where + ", action " + std::to_string(i));
      if (program_.Tainted() && Chance(70)) program_.Recover();
    }
    return program_.tally;
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }
  std::vector<int> Addresses() {
    return Chance(50) ? std::vector{3} : Chance(50) ? std::vector{3, 5} : std::vector{3, 4, 9};
  }
  // While the next action is prepared, runs, or is over.
  void Meanwhile() {
    static constexpr std::array kTabs = {Tab::Drawing, Tab::Text,   Tab::Status,
                                         Tab::Eeprom,  Tab::Macros, Tab::MatrixKeyboard};
    static constexpr std::array kButtons = {
        "cmdGetVersion", "cmdGetFreeBytes", "cmdSetMakro",   "cmdVerbindungPruefen",
        "cmdGetPort",    "cmdSetConfig",    "cmdGetText",    "cmdMatrixRead",
        "cmdPlayMakro",  "cmdClearConfig",  "cmdToolbar_10", "cmdSetMakroGeprueft",
    };
    const bool turns = Chance(30);
    const Tab tab = kTabs[static_cast<std::size_t>(Number(0, static_cast<int>(kTabs.size()) - 1))];
    const char* const button =
        kButtons[static_cast<std::size_t>(Number(0, static_cast<int>(kButtons.size()) - 1))];
    program_.loop.After(milliseconds(Number(600, 1500)), [this, turns, tab, button] {
      turns ? program_.Show(tab) : program_.Click(button);
    });
  }
  Strike Any() {
    Strike strike;
    strike.way = Chance(50) ? Way::ToHost : Way::ToTerminals;
    strike.at = static_cast<std::size_t>(Chance(70) ? Number(0, 12) : Number(0, 150));
    strike.kind = static_cast<Kind>(Number(0, static_cast<int>(kKindNames.size()) - 1));
    // What means something where it comes between.
    static constexpr std::string_view kTelling = "\x06\x15;\x1b?\x13\x11";
    if (strike.kind == Kind::Insert && Chance(50)) {
      const int which = Number(0, static_cast<int>(kTelling.size()) - 1);
      strike.value = static_cast<unsigned>(kTelling[static_cast<std::size_t>(which)]);
    }
    const bool takesTime = strike.kind >= Kind::Silence;
    strike.value = static_cast<unsigned>(takesTime ? Number(1, 2000) : Number(0, 255));
    if (strike.kind == Kind::Hold) strike.value *= 4;
    return strike;
  }

  std::mt19937 random_;
  FireProgram program_;
  bool haste_ = false;
};

// So many exchanges, in one program after the other.
Tally Use(const char* what, int exchanges, int faults, bool haste = false) {
  const auto start = static_cast<unsigned>(FromOutside("KELVO_FIRE_SEED", 1));
  Tally all;
  for (unsigned run = 0; all.exchanges < exchanges && all.failures == 0; ++run) {
    RandomUse use(start + run);
    if (haste) use.BeInHaste();
    all.Add(use.Actions(100, faults, "start value " + std::to_string(start + run)));
  }
  std::cout << what << ", start value " << start << ": " << all.Line() << '\n';
  return all;
}

TEST(WireFire, MixedActionsOnAGoodLineAreToldRight) {
  const Tally all = Use("good line", FromOutside("KELVO_FIRE", 300), 0);
  EXPECT_EQ(all.strikes, 0);
  EXPECT_TRUE(all.excused.empty());
}

TEST(WireFire, HasteOnAGoodLineIsToldRight) {
  const Tally all = Use("haste", FromOutside("KELVO_FIRE", 300), 0, true);
  EXPECT_TRUE(all.excused.empty());
}

TEST(WireFire, RandomFaultsMakeNoFalseWord) {
  const Tally all = Use("random faults", FromOutside("KELVO_FIRE", 600), 70);
  EXPECT_GT(all.strikes, all.actions / 10);
}

}  // namespace
}  // namespace kelvo::fire
