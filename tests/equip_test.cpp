#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <random>
#include <regex>

#include "inventory/equip_report.h"
#include "link/commands.h"
#include "terminal/erase.h"
#include "tests/fakes/bus_world.h"
#include "tests/fakes/failing_files.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using sim::Fault;
using testing_world::BusWorld;
using testing_world::milliseconds;
using testing_world::nanoseconds;
using testing_world::TemporaryFolder;

constexpr char kDevice[] = "/dev/line";

/// The program dies here.
struct Killed {};

std::string Macro(int number, const std::string& text) {
  return "\x1b"
         "EWM" +
         std::to_string(number) + "," + text + "\x03";
}

// All characters but the end of a macro and those that the handshake takes.
std::string AllCharacters() {
  std::string text;
  for (int code = 0; code < 256; ++code) {
    if (code != 3 && code != 17 && code != 19) text += static_cast<char>(code);
  }
  return text;
}

// What lies in the Terminal that is broken.
Equipment Original() {
  Inventory inventory;
  for (const std::string& command :
       {Macro(0, "\x1bGC"), Macro(7, AllCharacters()), Macro(255, std::string(400, 'x')),
        std::string("\x1b"
                    "EWK3,80,31,D,FF,FF,FF,FF,FF,FF;"),
        std::string("\x1b"
                    "EWK4,41,61,42,63;"),
        std::string("\x1b"
                    "EWB9,2,2,00FFA55A;")}) {
    const auto item = ItemOf(command, "Wörter " + std::to_string(command.size()));
    inventory.Take(
        {{}, {}, Event::Acknowledged, {ItemChange::Kind::Written, item->key}, item->name, command});
  }
  return EquipmentOf(inventory, "Bestand von \"Füllstand\"");
}

/// A line of Terminals, and a program that equips them and may die.
class Equipping {
 public:
  explicit Equipping(std::initializer_list<sim::TerminalSetup> setups,
                     Equipment equipment = Original())
      : world_(setups), job_{std::move(equipment), {}, false} {
    for (std::size_t i = 0; i < setups.size(); ++i) {
      job_.targets.push_back({{kDevice, world_.At(i).Setup().address}, "Ziel", {}});
    }
    for (const Item& item : job_.equipment.items) Hear(*original_, item.command);
    if (job_.HasSettings()) Hear(*original_, job_.equipment.settings + WriteConfig().Text());
    const auto hear = world_.port.onCharacter;
    world_.port.onCharacter = [this, hear](char character) {
      hear(character);
      if (--left_ == 0) end_();
    };
  }

  EquipJob& Job() { return job_; }
  BusWorld& World() { return world_; }
  sim::Terminal& At(std::size_t index) { return world_.At(index); }
  const std::string& Path() const { return path_; }
  /// After so many characters more.
  void LoseLineAfter(int characters) {
    left_ = characters;
    end_ = [this] { world_.port.Lose(); };
  }
  void DieAfter(int characters) {
    left_ = characters;
    end_ = [] { throw Killed(); };
  }

  /// A program that begins the job, or goes on with what one before has left.
  EquipRun::End Run() {
    world_.port.Open();
    // The timers know the one before until there is this one.
    exchange_ =
        std::make_unique<Exchange>(world_.com1, world_.loop, world_.tmrTimeout, world_.tmrRS485);
    Exchange& exchange = *exchange_;
    world_.tmrTimeout.SetEnabled(true);
    TerminalState state;
    EquipRun run({exchange, world_.loop, state, 2.0, 2.0});
    stop = [&run] { run.Stop(); };
    auto log = EquipLog::Open(path_);
    if (!log) log = EquipLog::Create(path_, job_);
    const EquipRun::End end = run.Run(*log, [this](const EquipEntry& entry) {
      entries.push_back(entry);
      if (onEntry) onEntry(entry);
    });
    left_ = 0;
    return end;
  }
  EquipProgress Progress() const { return EquipLog::Open(path_)->Progress(); }
  std::string Report() const { return EquipReport(job_, Progress()); }

  /// What is said to be done is in the Terminal as it was in the original.
  bool TellsTheTruth() {
    const EquipProgress progress = Progress();
    for (std::size_t i = 0; i < progress.targets.size(); ++i) {
      for (std::size_t step = 0; step < job_.equipment.items.size(); ++step) {
        if (progress.targets[i].steps[step].Done() && !Holds(i, step)) return false;
      }
    }
    return true;
  }
  bool Equal(std::size_t index) {
    return At(index).Memory().Records() == original_->Memory().Records();
  }

  std::vector<EquipEntry> entries;
  std::function<void(const EquipEntry&)> onEntry;
  std::function<void()> stop;

 private:
  void Hear(sim::Terminal& terminal, std::string_view text) {
    if (!terminal.Powered()) terminal.PowerOn(world_.loop.Now());
    for (const char c : text) terminal.Receive(static_cast<unsigned char>(c), world_.loop.Now());
  }
  bool Holds(std::size_t index, std::size_t step) {
    using Kind = sim::Eeprom::Kind;
    const ItemKey key = job_.equipment.items[step].key;
    const Kind kind = key.kind == ItemKind::Macro    ? Kind::Macro
                      : key.kind == ItemKind::Bitmap ? Kind::Bitmap
                                                     : Kind::KeyTable;
    const auto number = static_cast<unsigned char>(key.number);
    return At(index).Memory().Read(kind, number) == original_->Memory().Read(kind, number);
  }

  BusWorld world_;
  std::unique_ptr<sim::Terminal> original_ =
      std::make_unique<sim::Terminal>(sim::TerminalSetup{}, world_.fonts);
  TemporaryFolder folder_;
  const std::string path_ = folder_.Path("kelvo.ausstattung");
  EquipJob job_;
  std::unique_ptr<Exchange> exchange_;
  int left_ = 0;
  std::function<void()> end_;
};

int Count(const std::vector<EquipEntry>& entries, EquipEntry::What what) {
  return static_cast<int>(std::count_if(entries.begin(), entries.end(),
                                        [what](const auto& entry) { return entry.what == what; }));
}

TEST(Equip, ABlankTerminalHoldsAfterwardsWhatTheOriginalHeld) {
  Equipping equipping({{.address = 5}, {.version = "1.9", .checksum = false, .address = 6}});
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  EXPECT_TRUE(equipping.Equal(0));
  EXPECT_TRUE(equipping.Equal(1));
  const std::string report = equipping.Report();
  EXPECT_NE(report.find("6 von 6 geschrieben, davon 6 geprüft"), std::string::npos) << report;
  EXPECT_NE(report.find("6 von 6 geschrieben, davon 0 geprüft"), std::string::npos) << report;
  EXPECT_NE(report.find("nicht vollständig bekannt"), std::string::npos) << report;
  // The run and each of the twelve steps have their times.
  const std::string moment = R"(\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d)";
  EXPECT_TRUE(
      std::regex_search(report, std::regex("Begonnen: " + moment + "\nStand: " + moment + "\n")))
      << report;
  const std::regex step("geprüft \\(" + moment + "\\)\n|ohne Prüfsumme \\(" + moment + "\\)\n");
  EXPECT_EQ(std::distance(std::sregex_iterator(report.begin(), report.end(), step), {}), 12)
      << report;
}

TEST(Equip, EndedAnywhereItGoesOnUntilAllIsThereAndNeverTellsTooMuch) {
  std::mt19937 dice(20261122);
  // Each ends three times before its time.
  for (int round = 0; round < 34; ++round) {
    Equipping equipping({{.address = 5, .eepromBytes = 730}});
    equipping.Job().erase = round % 2 == 0;
    if (equipping.Job().erase) equipping.At(0).Memory().Write(sim::Eeprom::Kind::Macro, 99, "old");
    for (int end = 0; end < 3; ++end) {
      const int characters = 1 + static_cast<int>(dice() % 1050);
      dice() % 2 == 0 ? equipping.DieAfter(characters) : equipping.LoseLineAfter(characters);
      try {
        equipping.Run();
      } catch (const Killed&) {
      }
      ASSERT_TRUE(equipping.TellsTheTruth()) << "round " << round;
      equipping.World().loop.RunFor(milliseconds(dice() % 3000));
    }
    ASSERT_EQ(equipping.Run(), EquipRun::End::Complete) << "round " << round;
    ASSERT_TRUE(equipping.Progress().Done()) << equipping.Report();
    ASSERT_TRUE(equipping.Equal(0)) << "round " << round;
  }
}

TEST(Equip, TheSettingsThatAreKnownAreSetProvenAndKept) {
  Equipment equipment = Original();
  equipment.settings =
      "\x1b!P5;\x1bTF2;\x1b"
      "EMK3;";
  Equipping equipping({{.address = 5}}, equipment);
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  EXPECT_TRUE(equipping.Equal(0)) << equipping.Report();
  EXPECT_TRUE(equipping.Progress().Done());
  Equipping disturbed({{.address = 5, .fault = Fault::Flips, .faultEvery = 23}}, equipment);
  disturbed.Run();
  EXPECT_TRUE(!disturbed.Progress().Done() || disturbed.Equal(0));
}

TEST(Equip, WhatWasWrittenIsNotErasedAgain) {
  Equipping equipping({{.address = 5}});
  equipping.Job().erase = true;
  equipping.onEntry = [&](const EquipEntry& entry) {
    if (entry.what == EquipEntry::What::Result) equipping.stop();
  };
  EXPECT_EQ(equipping.Run(), EquipRun::End::Stopped);
  while (equipping.Run() == EquipRun::End::Stopped) {
  }
  EXPECT_EQ(Count(equipping.entries, EquipEntry::What::Erased), 1);
  EXPECT_EQ(Count(equipping.entries, EquipEntry::What::Begun), 6);
  EXPECT_TRUE(equipping.Equal(0));
}

TEST(Equip, ATerminalThatTakesItsTimeForEachAnswerIsErasedToo) {
  Equipping equipping({{.address = 5, .fault = Fault::Slow}});
  equipping.Job().erase = true;
  equipping.At(0).Memory().Write(sim::Eeprom::Kind::Macro, 99, "old");
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  EXPECT_EQ(Count(equipping.entries, EquipEntry::What::Erased), 1) << equipping.Report();
  EXPECT_TRUE(equipping.Equal(0)) << equipping.Report();
}

TEST(Equip, OfSeveralTheOneThatFailsIsToldAndTheOthersAreDone) {
  Equipping equipping({{.address = 5},
                       {.address = 6, .fault = Fault::Nak},
                       {.address = 7, .fault = Fault::Silent},
                       {.address = 8, .eepromBytes = 500},
                       {.address = 9}});
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  const EquipProgress progress = equipping.Progress();
  const auto done = [&](std::size_t i) { return progress.targets[i].StepsDone(); };
  EXPECT_EQ(done(0), 6U);
  EXPECT_EQ(done(1), 0U);
  EXPECT_EQ(progress.targets[1].steps[0].verdict, WriteVerdict::Refused);
  EXPECT_EQ(progress.targets[2].stopped, "Es antwortet nicht.");
  EXPECT_EQ(done(3), 5U);  // all but the macro that needs most
  EXPECT_NE(equipping.Report().find("nicht genügend Platz im EEPROM"), std::string::npos);
  EXPECT_TRUE(equipping.Equal(4));

  equipping.At(2).SetFault(Fault::None);
  equipping.entries.clear();
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  EXPECT_TRUE(equipping.Equal(2));
  for (const EquipEntry& entry : equipping.entries) EXPECT_NE(entry.target % 4, 0U);
}

TEST(Equip, AnotherTerminalInItsPlaceIsNoticed) {
  Equipping equipping({{.address = 5}});
  equipping.LoseLineAfter(400);
  equipping.Run();
  equipping.At(0).SetVersion("2.30", false);
  equipping.Run();
  EXPECT_NE(equipping.Report().find("nicht mehr dasselbe Terminal: Version 2.30 statt 2.10F"),
            std::string::npos);
  equipping.At(0).SetVersion("2.10", true);
  equipping.At(0).Memory().Erase();
  EXPECT_EQ(equipping.Run(), EquipRun::End::Complete);
  EXPECT_EQ(Count(equipping.entries, EquipEntry::What::Anew), 1);
  EXPECT_TRUE(equipping.Equal(0));
}

TEST(Equip, CharactersThatFlipAreWrittenAgainOrTold) {
  // Two in one text can leave its sum as it is.
  for (const int every : {433, 500, 601, 997}) {
    Equipping equipping({{.address = 5, .fault = Fault::Flips, .faultEvery = every}});
    for (int i = 0; i < 5; ++i) {
      equipping.Run();
      EXPECT_TRUE(equipping.TellsTheTruth()) << every;
    }
  }
}

TEST(Erase, WithPatienceNeitherALateCountNorALateAcknowledgeIsMissed) {
  testing_world::ExchangeWorld world;
  const auto erased = [&world](int count, int acknowledge) {
    const auto at = [&world](int time, const char* text) {
      world.loop.After(milliseconds(time), [&world, text] { world.port.Arrive(text); });
    };
    at(count, "1\r0\r");
    at(acknowledge, "\x06");
    world.exchange.SetInterval(milliseconds(100));
    const bool done = EraseCountingPatiently(world.exchange, [](int, int) { return true; });
    world.loop.RunFor(milliseconds(9000));
    return done;
  };
  EXPECT_TRUE(erased(300, 302));
  EXPECT_TRUE(erased(1500, 2900));
  EXPECT_FALSE(erased(300, 6000));
}

TEST(EquipLog, ATornLineCostsOnlyItselfAndATornHeadIsNoRun) {
  TemporaryFolder folder;
  const std::string path = folder.Path("log");
  EquipJob job{Original(), {{{kDevice, 5}, "Tür\t\\1", true}}, true};
  const auto append = [&path](const std::string& text) {
    std::ofstream(path, std::ios::app | std::ios::binary) << text;
  };
  {
    auto log = EquipLog::Create(path, job);
    ASSERT_TRUE(log);
    log->Add({.what = EquipEntry::What::Version, .text = "2.10F ä"});
  }
  const std::string torn = EntryLine({.what = EquipEntry::What::Erased});
  append(torn.substr(0, torn.size() - 3));
  {
    auto log = EquipLog::Open(path);
    ASSERT_TRUE(log);
    EXPECT_EQ(log->Job(), job);
    log->Add({.what = EquipEntry::What::FreeBytes, .bytes = 77});
  }
  const auto log = EquipLog::Open(path);
  const TargetProgress& target = log->Progress().targets[0];
  EXPECT_EQ(target.version, "2.10F ä");
  EXPECT_EQ(target.erase, TargetProgress::Erase::No);
  EXPECT_EQ(target.freeBytes, 77);

  const std::string head = testing_world::ReadFile(path);
  const std::string none = head.substr(0, head.find("beginn") + 8);
  std::ofstream(path, std::ios::binary) << none;
  EXPECT_FALSE(EquipLog::Open(path));
  EXPECT_TRUE(EquipLog::Create(path, job));
  EXPECT_EQ(testing_world::ReadFile(folder.Path("ausstattung-1.txt")), none) << "renamed";
}

TEST(EquipLog, BeginsWholeOrLeavesTheOtherOne) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("log");
  const EquipJob before{Original(), {{{kDevice, 5}, "alt", true}}, false};
  const EquipJob job{Original(), {{{kDevice, 6}, "neu", true}}, false};
  bool failed = true;
  for (int which = 0; failed; ++which) {
    ASSERT_TRUE(EquipLog::Create(path, before));
    std::optional<EquipLog> log;
    {
      const testing_world::FailingFiles files(which, ENOSPC);
      log = EquipLog::Create(path, job);
      failed = files.HasFailed();
    }
    const auto there = EquipLog::Open(path);
    ASSERT_TRUE(there) << which;
    EXPECT_TRUE(there->Job() == job || (!log && there->Job() == before)) << which;
  }
  // Nor is another file appended to.
  std::filesystem::rename(path, folder.Path("victim"));
  std::filesystem::create_symlink(folder.Path("victim"), path);
  EXPECT_FALSE(EquipLog::Open(path));
}

TEST(Equipment, AFileKeepsItAndADamagedOneIsRefused) {
  Equipment equipment = Original();
  equipment.settings = "\x1b!P5;";
  const std::string file = EquipmentFile(equipment);
  EXPECT_EQ(ReadEquipmentFile(file), equipment);
  for (std::size_t i = 0; i < file.size(); i += 13) {
    std::string damaged = file;
    damaged[i] = damaged[i] == 'x' ? 'y' : 'x';
    EXPECT_FALSE(ReadEquipmentFile(damaged)) << i;
    EXPECT_FALSE(ReadEquipmentFile(file.substr(0, i)));
  }
}

}  // namespace
}  // namespace kelvo
