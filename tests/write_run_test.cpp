#include "inventory/write_clashes.h"

#include <gtest/gtest.h>

#include "link/commands.h"
#include "tests/fakes/bus_world.h"

namespace kelvo {
namespace {

using sim::Fault;
using testing_world::BusWorld;
using testing_world::milliseconds;

constexpr int kTerminals = 16;

/// Sixteen Terminals that are to get the same macro.
class WriteRunTest : public testing::Test, protected BusWorld {
 protected:
  WriteRunTest() {
    const std::string text = "\x1bGC\x1bGP10,10;\x1bGTPumpe an\x04";
    WriteOrder order{{{ItemKind::Macro, 9}, WriteMakro(9, text).Text(), "Pumpe"}, {}};
    order.frame.room = text.size();
    for (int address = 0; address < kTerminals; ++address) {
      Add({.checksum = address != 13, .address = address});
      jobs.push_back({"Nr. " + std::to_string(address), address, address != 13, true, order});
    }
  }
  void Run() {
    port.written.clear();
    run.Run(jobs, {}, [](std::size_t) {});
  }
  std::string Verdicts() const {
    std::string verdicts;
    for (const WriteJob& job : jobs) {
      const bool proven = job.Done() && job.result.verdict == WriteVerdict::Proven;
      verdicts += std::string(job.ticked ? "*" : "") + (proven ? "ok|" : JobText(job) + "|");
    }
    return verdicts;
  }
  bool Holds(int address) {
    return At(static_cast<std::size_t>(address))
        .Memory()
        .Read(sim::Eeprom::Kind::Macro, 9)
        .has_value();
  }

  std::vector<WriteJob> jobs;
  WriteRun run{exchange, loop};
};

TEST_F(WriteRunTest, EachHasItsOwnVerdictAndOnlyTheFailedAreWrittenAgain) {
  At(3).Memory() = sim::Eeprom(30);
  At(5).SetFault(Fault::Nak);
  At(7).SetFault(Fault::Silent);
  // Wrong bits in the text of the macro.
  const auto undisturbed = port.onCharacter;
  port.onCharacter = [&, left = std::string()](char c) mutable {
    left += c;
    const bool in = left.ends_with("Pu") && left.find("!A10;") != std::string::npos;
    undisturbed(in && left.find("!A11;") == std::string::npos ? 'v' : c);
  };
  Run();
  port.onCharacter = undisturbed;
  const WriteResult& wrong = jobs[10].result;
  EXPECT_EQ(Verdicts(),
            "ok|ok|ok|*nicht geschrieben: nicht genügend Platz, frei sind 30 Byte|ok|"
            "*nicht bestätigt: das Terminal hat es abgelehnt (NAK)|ok|"
            "*nicht geschrieben: unter Adresse 7 antwortet niemand|ok|ok|*" +
                ResultText(wrong) + "|ok|ok|bestätigt, ohne Prüfsumme|ok|ok|");
  EXPECT_EQ(wrong.verdict, WriteVerdict::WrongSum);
  EXPECT_EQ(JobSummary(jobs), "11 geprüft, 1 bestätigt ohne Prüfsumme, 4 fehlgeschlagen.");
  EXPECT_TRUE(port.written.ends_with("\x1b!A254;"));
  for (const int address : {3, 7}) EXPECT_FALSE(Holds(address));
  At(3).Memory() = sim::Eeprom(8192);
  At(5).SetFault(Fault::None);
  At(7).SetFault(Fault::None);
  Run();
  EXPECT_EQ(JobSummary(jobs), "15 geprüft, 1 bestätigt ohne Prüfsumme, 0 fehlgeschlagen.");
  for (int address = 0; address < kTerminals; ++address) {
    const bool again = address == 3 || address == 5 || address == 7 || address == 10;
    const std::string select = "\x1b!A" + std::to_string(address) + ";";
    EXPECT_EQ(port.written.find(select) != std::string::npos, again) << address;
    EXPECT_TRUE(Holds(address)) << address;
  }
}

TEST_F(WriteRunTest, StopsBetweenTwoAndGoesOnWithTheOpenOnes) {
  loop.After(milliseconds(300), [this] { run.Stop(); });
  Run();
  EXPECT_TRUE(Verdicts().starts_with("ok|ok|")) << Verdicts();
  EXPECT_TRUE(Verdicts().ends_with("*offen|*offen|"));
  EXPECT_EQ(Holds(15), false);
  Run();
  EXPECT_EQ(JobSummary(jobs), "15 geprüft, 1 bestätigt ohne Prüfsumme, 0 fehlgeschlagen.");
  for (int i = 0; i < kTerminals; ++i) EXPECT_TRUE(Holds(i));
}

TEST_F(WriteRunTest, OfThoseWithOnePlaceOneStaysTicked) {
  WriteJob matrix = jobs[2];
  matrix.order.item = {{ItemKind::MatrixTable, 9}, "m", "Zehner"};
  WriteJob at = matrix;
  at.order.item = {{ItemKind::AtTable, 9}, "a", "Deutsch"};
  WriteJob other = jobs[2];
  other.order.item.name = "Ventil";
  jobs = {jobs[1], jobs[2], matrix, at, other, jobs[2]};
  const WriteClashes clashes(jobs);
  clashes.KeepOne(jobs);
  std::string ticked;
  for (const WriteJob& job : jobs) ticked += job.ticked ? '*' : '-';
  EXPECT_EQ(ticked, "***---");
  EXPECT_EQ(clashes.Text(jobs, 0), "") << "another address";
  EXPECT_EQ(clashes.Text(jobs, 1), "geht nicht zusammen mit Makro 9 „Ventil“ und 1 weiteren");
  EXPECT_EQ(clashes.Text(jobs, 2), "geht nicht zusammen mit AT-Tabelle 9 „Deutsch“");
  EXPECT_EQ(clashes.Text(jobs, 5), "die Adresse steht mehrmals in der Liste");
}

TEST_F(WriteRunTest, LostLineEndsItWhereverItIs) {
  for (int ms = 1; ms < 400; ms += 23) {
    port.Open();
    for (WriteJob& job : jobs) job = {job.terminal, job.address, job.canSum, true, job.order};
    for (int i = 0; i < kTerminals; ++i) At(static_cast<std::size_t>(i)).Memory().Erase();
    loop.After(milliseconds(ms), [this] { port.Lose(); });
    Run();
    for (const WriteJob& job : jobs) EXPECT_TRUE(!job.Done() || Holds(job.address)) << ms;
    EXPECT_TRUE(jobs.back().ticked);
    EXPECT_EQ(JobText(jobs.back()), "offen") << ms;
    loop.RunFor(milliseconds(2000));
  }
}

}  // namespace
}  // namespace kelvo
