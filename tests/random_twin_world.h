#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "bus/terminal_search.h"
#include "link/addresses.h"
#include "tests/random_macros.h"
#include "tests/twin_world.h"

namespace kelvo::testing_world {

inline const std::string Esc = "\x1B";

/// Random uses of random worlds.
class RandomWorld : public TwinWorld {
 public:
  explicit RandomWorld(unsigned number) : random_(number) {
    const int count = random_.Chance(40) ? 1 : random_.Number(2, 4);
    if (random_.Chance(70)) assumed = {random_.Number(20, 320), random_.Number(20, 240)};
    const bool other = random_.Chance(15);
    for (int i = 0; i < count; ++i) {
      sim::Terminal& terminal = Add({.address = 3 * i + 1,
                                     .echoQueries = random_.Chance(20),
                                     .eepromBytes = random_.Chance(30) ? 700 : 8192,
                                     .width = assumed.first + (other ? 8 * i + 8 : 0),
                                     .height = assumed.second});
      Use(terminal);
    }
    line.line.SetEcho(random_.Chance(30));
    if (count > 1) Select();
  }

  void Step() {
    switch (random_.Number(0, 28)) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
        return Say(random_.Strokes(12));
      case 5:
      case 6:
        return Say(Esc + "GC" + random_.Strokes(6));
      case 7:
      case 8:
        return Write(Esc + "EWM" + Makro() + "," + MakroText() + "\x03");
      case 9:
        return Write(Esc + "EDM" + Makro() + ";");
      case 10:
      case 11:
        return Say(Esc + "ECM" + Makro() + ";");
      case 12:
      case 13:
      case 14:
        return AskSomething();
      case 15:
        return Select();
      case 16:
        return Say((random_.Chance(50) ? Esc + "!A255;" : "") + Esc + "R");
      case 17:
        return Configure();
      case 18:
        return Prove();
      case 19:
        return Cut();
      case 20:
        return random_.Chance(30) ? LoseLine() : SwitchOff();
      case 21:
        return Misbehave();
      case 22:
        return Search();
      default:
        return Begin();
    }
  }

  /// Compares whatever is not doubted; the number of statements, and of doubts.
  void Compare(const std::string& where) {
    Settle();
    for (const auto& [address, twin] : twins.All()) Compare(*twin, Real(address), where);
    if (line.bus.Count() == 1 && !twins.PresentAddress()) {
      Compare(*twins.Present(), &At(0), where);
    }
  }
  int statements = 0;
  int doubts = 0;
  /// What has led to a failure.
  std::string LastWrites() const {
    std::string text;
    for (std::size_t i = port.writes.size() - std::min<std::size_t>(port.writes.size(), 12);
         i < port.writes.size(); ++i) {
      text += std::to_string(port.writeTimes[i] / milliseconds(1)) + " ms: ";
      for (const char byte : port.writes[i]) {
        text += byte == '\x1B' ? '$' : byte >= 0 && byte < ' ' ? '^' : byte;
      }
      text += '\n';
    }
    return text;
  }

 private:
  // It has a past: pictures and macros that nobody knows of.
  void Use(sim::Terminal& terminal) {
    const auto put = [&terminal](const std::string& text) {
      for (const char byte : text) terminal.Receive(static_cast<unsigned char>(byte), {});
    };
    for (const int number : {0, 2, 4}) {
      if (!random_.Chance(40)) continue;
      terminal.Memory().Write(sim::Eeprom::Kind::Macro, static_cast<unsigned char>(number),
                              random_.Strokes(8));
    }
    if (random_.Chance(30)) put(random_.Strokes(10) + Esc + "EWC");
    if (random_.Chance(60)) put(random_.Strokes(10));
    while (terminal.OutputReady()) terminal.TakeOutput();
  }
  std::string Makro() { return std::to_string(random_.Number(0, 4)); }
  // What is known may do anything.
  std::string MakroText() {
    std::string text = random_.Strokes(10);
    if (random_.Chance(30)) text += RandomMacros::Call(random_.Number(0, 4));
    if (random_.Chance(5)) text += Esc + "R";
    if (random_.Chance(5)) text += Esc + "!A" + std::to_string(random_.Number(0, 9)) + ";";
    if (random_.Chance(5)) text += Esc + "GP3";
    return text + (random_.Chance(50) ? random_.Strokes(4) : "");
  }
  void Select() {
    const int address = random_.Chance(70)
                            ? 3 * random_.Number(0, static_cast<int>(line.bus.Count()) - 1) + 1
                        : random_.Chance(50) ? kAllAddresses
                                             : random_.Number(0, 254);
    Say(Esc + "!A" + std::to_string(address) + ";");
  }
  // As a drawing begins.
  void Begin() {
    Query("?V");
    if (random_.Chance(90)) AskInfo();
    std::string text = Esc + "GC" + Esc + "GH" + Esc + "TH";
    for (const char* set : {"TF3;", "TA1;", "TM0;", "TZ1,2;", "GF2;", "GA0;", "GZ1,1;", "!C0;"}) {
      text += Esc + set;
    }
    Say(text + random_.Strokes(6));
  }
  void AskSomething() {
    static constexpr std::array kQuestions = {"?V",  "?A",  "T?P", "T?F", "T?A", "T?M",
                                              "T?Z", "G?P", "?C",  "?c",  "E?F"};
    Query(kQuestions[static_cast<std::size_t>(random_.Number(0, 10))]);
    if (random_.Chance(30)) AskInfo();
  }
  void Configure() {
    if (random_.Chance(30)) {
      Say(Esc + "!R" + std::to_string(random_.Number(20, 320)) + "," +
          std::to_string(random_.Number(20, 240)) + ",;" + (random_.Chance(80) ? Esc + "R" : ""));
    } else if (random_.Chance(20)) {
      Write(Esc + "EE");
      loop.RunFor(std::chrono::seconds(2));
    } else {
      Write(Esc + (random_.Chance(60) ? "EWC" : "EDC"));
    }
  }
  void Search() {
    const int first = random_.Number(0, 8);
    for (int address = first; address < first + 4; ++address) {
      Say(Esc + "!A" + std::to_string(address) + ";");
      Query("?A");
      if (!reply.Failed()) Say(FoundDisplay(address));
    }
  }
  // With or without a fault that the sum must show.
  void Prove() {
    Query("?A");
    Say(Esc + "C!");
    Settle();
    // Where all answer at once nobody's sum can be told.
    const bool one = twins.Listening() ? twins.Listening() != kAllAddresses : twins.All().empty();
    const bool faulty = one && random_.Chance(30);
    for (std::size_t i = 0; i < line.bus.Count() && faulty; ++i) At(i).SetFault(sim::Fault::Drops);
    for (std::size_t i = 0; i < line.bus.Count() && faulty; ++i) At(i).SetFaultEvery(41);
    Say(random_.Strokes(10));
    Settle();
    for (std::size_t i = 0; i < line.bus.Count(); ++i) At(i).SetFault(sim::Fault::None);
    Query("C?");
  }
  void Cut() {
    Say(random_.Strokes(30));
    loop.RunFor(milliseconds(random_.Number(0, 60)));
    if (random_.Chance(50)) {
      exchange.SendString(random_.Strokes(3), Pending::Discard);
    } else {
      port.Close();
      loop.RunFor(milliseconds(100));
      port.Open();
      twins.PortIs(1);
    }
  }
  void LoseLine() {
    if (random_.Chance(50)) Say(random_.Strokes(20));
    port.Lose();
    twins.PortLost();
    if (random_.Chance(50)) At(0).PowerOn(loop.Now());
    port.Open();
    twins.PortIs(1);
  }
  // Noticed, because something is asked meanwhile.
  void SwitchOff() {
    const int index = random_.Number(0, static_cast<int>(line.bus.Count()) - 1);
    sim::Terminal& terminal = At(static_cast<std::size_t>(index));
    if (line.bus.Count() > 1) Say(Esc + "!A" + std::to_string(terminal.Setup().address) + ";");
    Settle();
    if (!terminal.Selected()) return;
    terminal.PowerOff();
    if (random_.Chance(50)) Say(random_.Strokes(5));
    Query("?V");
    if (random_.Chance(50)) Say(Esc + "GC" + random_.Strokes(5));
    Settle();
    terminal.PowerOn(loop.Now());
    if (random_.Chance(50)) Query("?V");
  }
  void Misbehave() {
    static constexpr std::array kFaults = {sim::Fault::Nak, sim::Fault::Silent, sim::Fault::Garbled,
                                           sim::Fault::Slow};
    const int index = random_.Number(0, static_cast<int>(line.bus.Count()) - 1);
    sim::Terminal& terminal = At(static_cast<std::size_t>(index));
    terminal.SetFault(kFaults[static_cast<std::size_t>(random_.Number(0, 3))]);
    Write(Esc + "EWM" + Makro() + "," + MakroText() + "\x03");
    Say(random_.Strokes(3));
    Settle();
    terminal.SetFault(sim::Fault::None);
  }

  void Compare(const Twin& twin, const sim::Terminal* real, const std::string& where) {
    ++statements;
    if (!twin.Certain()) {
      ++doubts;
      return;
    }
    ASSERT_NE(real, nullptr) << where << ": nobody there";
    const sim::Screen& display = twin.terminal.Display();
    const PixelMap& pixels = real->Display().Pixels();
    EXPECT_EQ(display.Pixels(), pixels) << where << ", address " << real->Setup().address;
    if (!twin.knowledge.KnowsCursor()) return;
    EXPECT_EQ(display.Picture(true), real->Display().Picture(true)) << where << ", cursor";
  }

  RandomMacros random_;
};

}  // namespace kelvo::testing_world
