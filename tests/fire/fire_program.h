#pragma once

#include <QListWidget>
#include <QSpinBox>
#include <QTimer>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/drawing_samples.h"
#include "tests/fire/faulty_line.h"
#include "tests/window_fixture.h"

namespace kelvo::fire {

/// Why a word that is wrong could not be avoided.
enum class Excuse {
  Misheard,  ///< a Terminal has acknowledged or answered what it heard, which was not what was sent
  Forged,    ///< the host heard another answer than was given
  Late,      ///< an answer came later than it is waited for
  EqualSum,  ///< other characters with an equal sum
  Mistaken,  ///< another Terminal, which misheard who is selected, has answered with the sum
};
inline constexpr std::array kExcuseNames = {"misheard", "forged answer", "late", "equal sum",
                                            "mistaken"};

/// What came of many actions.
struct Tally {
  int actions = 0;
  int exchanges = 0;
  int strikes = 0;
  int words = 0;  ///< that were held to the truth
  int boxes = 0;  ///< failures that were told
  int failures = 0;
  std::map<Excuse, int> excused{};

  void Add(const Tally& other);
  std::string Line() const;
};

/// The real window, an operator who notes what they are told, and Terminals behind a line that may
/// be struck. What is said is held to the Terminals' memories and displays and to what went over
/// the wires.
class FireProgram : public WindowTest {
 public:
  /// What one action is: `prepare` happens on a good line.
  struct Action {
    const char* name;
    std::function<void(FireProgram&)> prepare;
    std::function<void(FireProgram&)> act;
    std::function<void(FireProgram&)> judge;
    bool saysItself = false;  ///< what failed stands in its own list
    bool refused = false;     ///< it fails on a good line, too
  };

  /// `addresses`: of the Terminals, of which the first is selected; one may occur twice. The
  /// drawings begin at `start`. The Terminals' rate may be another than the program's.
  explicit FireProgram(const std::vector<int>& addresses, unsigned start = 1, int baud = 19200);
  ~FireProgram() override;
  void TestBody() override {}

  /// Does it, with these faults, and judges what was said. `where`: told with a failure.
  void Do(const Action& action, const std::vector<Strike>& strikes, const std::string& where);
  /// How many characters go each way when nothing fails.
  std::pair<std::size_t, std::size_t> Lengths(const Action& action);
  /// As the operator does after a fault: the Terminals are switched off and on, one is selected. By
  /// others their memories are put back.
  void Recover();
  bool Tainted() const { return tainted_; }
  /// Whoever is addressed is alone there and understands, as long as nothing strikes.
  bool GoodLine() const { return good_; }
  /// The next action begins so long after the last one.
  milliseconds rest{2500};

  Tally tally;

  // For those who act and judge.
  using ControlsTest::Choose;
  using ControlsTest::Click;
  using ControlsTest::Find;
  using ControlsTest::folder;
  using ControlsTest::loop;
  using ControlsTest::person;
  using ControlsTest::port;
  using ControlsTest::Text;
  using ControlsTest::Type;
  using WindowTest::Grafik;
  using WindowTest::Show;
  using WindowTest::Trigger;

  RandomDrawings drawings;
  const DeviceFonts& Fonts() const { return fonts_; }
  FaultyLine& Line() { return line_; }
  sim::Terminal& At(std::size_t index) { return line_.Bus().At(index); }
  sim::Terminal& Chosen() { return At(0); }
  void Select(int address);
  bool Told(const std::string& part) const;
  /// A line of the history, of those of this action, begins so behind its sign.
  bool Noted(const std::string& beginning) const;
  /// One that ends so tells of a failure.
  bool Failed(const std::string& end) const;
  /// Of a word that was told: if it is not true, only the line can excuse it.
  void Hold(bool truth, const std::string& word);
  /// The same of a word that a Terminal has proven by this sum.
  void HoldProven(bool truth, std::size_t terminal, std::uint16_t sum, const std::string& word);

 private:
  void Begin(const std::vector<Strike>& strikes);
  void ReadHistory();
  void JudgeBoxes();
  void JudgeAcknowledged();
  void JudgeNamed(const Action& action);
  void JudgeTime(nanoseconds took);
  void JudgeSilence();
  void JudgeGoodLine(const Action& action);
  bool Heard(char character, nanoseconds from, nanoseconds to) const;
  nanoseconds EndOf(std::size_t write) const;
  void Fail(const std::string& what);
  std::string Story() const;

  struct Box {
    std::string text;
    nanoseconds time;
  };

  DeviceFonts fonts_;
  FaultyLine line_{loop, port};
  std::vector<int> addresses_;
  bool good_;  // the line, when nothing strikes it
  std::vector<std::string> images_;
  std::vector<Box> boxes_;
  std::vector<std::string> history_;
  std::vector<Strike> strikes_;
  std::string where_;
  nanoseconds begun_{0};
  int openedBefore_ = 0;
  bool tainted_ = false;
  bool hung_ = false;
  int guard_ = 0;
};

}  // namespace kelvo::fire
