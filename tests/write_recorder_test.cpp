#include "inventory/write_recorder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "inventory/journal_text.h"
#include "inventory/proven_write.h"
#include "inventory/reply_memory.h"
#include "link/commands.h"
#include "link/failure_cause.h"
#include "terminal/erase.h"
#include "tests/fakes/bus_world.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::TemporaryFolder;

constexpr char kSerialDevice[] = "/dev/ttyS0";
constexpr int kAddresses[] = {0, 5, 6};

class WriteRecorderTest : public testing::Test, protected BusWorld {
 protected:
  explicit WriteRecorderTest(bool onDisc = false)
      : journal(onDisc ? WriteJournal(folder.Path(kJournalFile)) : WriteJournal()) {
    for (const int address : kAddresses) Add({.address = address});
    state.PortIs(1);
  }
  Reply Write(const Command& command) {
    Reply reply = exchange.SendString(command);
    exchange.WaitUntilSent();
    // One that restarts takes its time.
    const auto end = loop.Now() + std::chrono::milliseconds(500);
    while (loop.Now() < end) loop.WaitForEvent(end - loop.Now());
    return reply;
  }
  sim::Eeprom& Memory(int address) {
    return At(static_cast<std::size_t>(std::find(kAddresses, kAddresses + 3, address) - kAddresses))
        .Memory();
  }
  Inventory Of(int address) { return journal.Of({kSerialDevice, address}); }
  const Held* Macro(const Inventory& inventory, int number) {
    return inventory.At({ItemKind::Macro, number});
  }
  void LoseLine() {
    port.Lose();
    state.PortLost();
  }
  void OpenLine() {
    port.Open();
    state.PortIs(1);
  }

  TemporaryFolder folder;
  LineWatch watch{com1, exchange};
  LineState state{watch, loop, exchange};
  WriteJournal journal;
  WriteRecorder recorder{{watch, state, exchange, loop, journal, [] { return kSerialDevice; }}};
};

TEST_F(WriteRecorderTest, EachWriteIsKeptForWhoListenedWithItsRecordAndItsProof) {
  Write(SelectAddress(5));
  {
    const Sending sending(exchange, {"Gruß", "Makro"});
    Write(WriteMakro(7, "eins"));
  }
  {
    const Sending sending(exchange, {"Zehner", "ATTab"});
    Write(WriteKeyTable("3", "80", ",1,2,3,4,5,6,7,8"));
  }
  exchange.SendQuery(AskFreeBytes());
  exchange.SendQuery(AskFreeBytes());
  const Item eight{{ItemKind::Macro, 8}, WriteMakro(8, "acht").Text(), "Acht"};
  EXPECT_EQ(ProvenWrite(exchange, loop).Write(5, true, eight).verdict, WriteVerdict::Proven);
  const Inventory five = Of(5);
  EXPECT_EQ(Macro(five, 7)->item,
            (Item{{ItemKind::Macro, 7}, WriteMakro(7, "eins").Text(), "Gruß"}));
  EXPECT_EQ(Macro(five, 7)->proof, Proof::Acknowledged);
  EXPECT_EQ(Macro(five, 8)->proof, Proof::Checksum);
  EXPECT_EQ(Macro(five, 8)->item, eight);
  EXPECT_EQ(five.Items().count({ItemKind::AtTable, 3}), 1u);
  EXPECT_EQ(five.FreeBytes().LastReading()->bytes, Memory(5).Free() + 8);
  EXPECT_TRUE(Of(6).Items().empty());
  EXPECT_EQ(journal.Entries().size(), 8u) << "begun and acknowledged, room once, proof";
}

TEST_F(WriteRecorderTest, RepliesAreKeptForWhoListenedWhoeverAsked) {
  const ReplyMemory replies(watch, loop, [this] { return recorder.Listener(); });
  Readings readings;
  At(1).SetFault(sim::Fault::Silent);
  At(2).SetFault(sim::Fault::Silent);
  exchange.SendQuery(Command(CommandName::AskVersion));
  exchange.SendQuery(Command(CommandName::AskAddress));
  replies.AddTo(readings);
  EXPECT_NE(readings.Last({kSerialDevice, 0}, CommandName::AskVersion), nullptr)
      << "told who it is";
  At(1).SetFault(sim::Fault::None);
  for (const int address : {5, 255, 6}) {
    Write(SelectAddress(address));
    if (address != 6) exchange.SendQuery(Command(CommandName::AskVersion));
  }
  exchange.SendQuery(Command(CommandName::AskChecksum));
  replies.AddTo(readings);
  const auto last = [&readings](int address, CommandName query) {
    const Reading* const reading = readings.Last({kSerialDevice, address}, query);
    return reading == nullptr ? std::string("-") : reading->reply;
  };
  EXPECT_EQ(last(5, CommandName::AskVersion), "2.10F");
  EXPECT_EQ(last(255, CommandName::AskVersion), "-") << "nobody knows whose";
  EXPECT_EQ(last(6, CommandName::AskVersion), "-");
  EXPECT_EQ(last(6, CommandName::AskChecksum), "-") << "tells nothing of a Terminal";
  // What the readings have already, or newer, stays.
  readings.Take({loop.WallClock() + std::chrono::seconds(1),
                 {kSerialDevice, 5},
                 CommandName::AskVersion,
                 "3.0"});
  replies.AddTo(readings);
  EXPECT_EQ(last(5, CommandName::AskVersion), "3.0");
}

// Whoever answers there is one that has missed that it was selected away, and may be any.
TEST_F(WriteRecorderTest, TheAddressThatClosesATransferIsNoTerminal) {
  Add({.address = 254});
  Write(SelectAddress(5));
  Write(WriteMakro(7, "alt"));
  Write(SelectAddress(254));
  Write(WriteMakro(7, "neu"));
  exchange.SendQuery(AskFreeBytes());
  EXPECT_EQ(journal.Terminals(),
            (std::vector<TerminalId>{{kSerialDevice, kUnknownAddress}, {kSerialDevice, 5}}));
  EXPECT_EQ(Macro(Of(5), 7), nullptr);
}

TEST_F(WriteRecorderTest, AnEraseThatCountsIsRecordedWithTheEndThatCame) {
  Write(SelectAddress(5));
  Write(WriteMakro(7, "alt"));
  const auto erase = [this](sim::Fault fault) {
    At(1).SetFault(fault);
    EraseCounting(exchange, [](int, int) { return true; });
    At(1).SetFault(sim::Fault::None);
    const JournalEntry& last = journal.Entries().back();
    return EventText(last.event) + (last.change.kind == ItemChange::Kind::Erased ? "" : "?");
  };
  EXPECT_EQ(erase(sim::Fault::Nak), "abgelehnt");
  EXPECT_EQ(state.Answers(), Answering::Answered);
  EXPECT_EQ(CauseOf("kein ACK nach löschen", state), FailureCause::Refused);
  EXPECT_EQ(erase(sim::Fault::Silent), "keine Antwort");
  EXPECT_EQ(Of(5).DoubtAt({ItemKind::Macro, 7})->event, Event::Silent);
  Write(WriteMakro(8, "acht"));
  ASSERT_NE(Macro(Of(5), 8), nullptr) << "what came behind it has its own end";
  // Nobody waits for its end, and goes on.
  EraseCounting(exchange, [](int, int) { return false; });
  Write(SelectAddress(5));
  exchange.SendQuery(AskFreeBytes());
  EXPECT_EQ(Of(5).DoubtAt({ItemKind::Macro, 8})->event, Event::Unclear);
  EXPECT_EQ(erase(sim::Fault::None), "bestätigt");
}

TEST_F(WriteRecorderTest, WhatAMacroDoesToTheEepromIsNotKnownWhenItWasRun) {
  Write(SelectAddress(5));
  Write(WriteMakro(7, "alt"));
  Write(WriteMakro(9, DeleteMakro("7").Text()));
  Write(WriteMakro(8, RunMakro(9).Text()));
  ASSERT_NE(Macro(Of(5), 7), nullptr);
  Write(RunMakro(8));
  EXPECT_EQ(Macro(Of(5), 7), nullptr);
  EXPECT_EQ(Of(5).Doubtful().size(), 1u);
}

TEST_F(WriteRecorderTest, ARestartOfAllLeavesWhatNoKnownAutostartChanges) {
  Write(SelectAddress(5));
  Write(EraseEEprom());
  Write(WriteMakro(7, "sieben"));
  Write(SelectAddress(6));
  Write(WriteMakro(0, ClearDisplay().Text()));
  Write(WriteMakro(7, "sechs"));
  Write(SelectAddress(255));
  const std::size_t before = journal.Entries().size();
  Write(Restart());
  EXPECT_EQ(journal.Entries().size(), before) << "nothing is changed by it";
  EXPECT_NE(Macro(Of(5), 7), nullptr);
  EXPECT_NE(Macro(Of(6), 7), nullptr);
  // Nobody says whether this one has arrived, but both would only draw.
  Write(SelectAddress(6));
  At(2).SetFault(sim::Fault::Silent);
  Write(WriteMakro(0, "nur Text"));
  Write(Restart());
  EXPECT_NE(Macro(Of(6), 7), nullptr);
  // This one would not.
  Write(SelectAddress(6));
  Write(WriteMakro(0, DeleteMakro("7").Text()));
  Write(Restart());
  const Inventory six = Of(6);
  const Doubt* const seven = six.DoubtAt({ItemKind::Macro, 7});
  ASSERT_NE(seven, nullptr);
  EXPECT_EQ(ItemContent(seven->before->item), "sechs");
  EXPECT_NE(Macro(Of(5), 7), nullptr);
}

TEST_F(WriteRecorderTest, AConfigurationKeepsWhatWasSetFromHereSinceTheRestartOrTheOneBefore) {
  const auto config = [this](int address) {
    const Inventory inventory = Of(address);
    const Held* const held = inventory.At({ItemKind::Config, 0});
    return held == nullptr ? std::string("none") : held->item.command;
  };
  Write(SelectAddress(6));
  Write(SetTextFont(9));
  Write(SelectAddress(5));
  Write(SetPort("1"));
  Write(SetTextFont(1));
  Write(SetPort("3"));
  Write(WriteConfig());
  EXPECT_EQ(config(5),
            "\x1bTF1;\x1b!P3;\x1b"
            "EWC");
  Write(SetPort("7"));  // lost by the restart
  Write(Restart());
  Write(SelectAddress(5));
  Write(SetTextFont(2));
  Write(WriteConfig());
  EXPECT_EQ(config(5),
            "\x1b!P3;\x1bTF2;\x1b"
            "EWC");
  EXPECT_EQ(config(6), "none");
}

class RecordedOnDiscTest : public WriteRecorderTest {
 protected:
  RecordedOnDiscTest() : WriteRecorderTest(true) {}
};

TEST_F(RecordedOnDiscTest, AWriteIsOnTheDiscAsBegunBeforeItsFirstCharacterLeaves) {
  Write(SelectAddress(5));
  Write(WriteMakro(7, "alt"));
  std::string atFirstCharacter;
  const auto pass = port.onCharacter;
  port.onCharacter = [&](char character) {
    if (atFirstCharacter.empty()) {
      atFirstCharacter = testing_world::ReadFile(folder.Path(kJournalFile));
    }
    pass(character);
  };
  Write(WriteMakro(7, "neu"));
  std::ofstream(folder.Path("killed.txt")) << atFirstCharacter;
  EXPECT_EQ(WriteJournal(folder.Path("killed.txt")).Of({kSerialDevice, 5}).Items().size(), 0u);
  EXPECT_EQ(
      ItemContent(Macro(WriteJournal(folder.Path(kJournalFile)).Of({kSerialDevice, 5}), 7)->item),
      "neu");
}

TEST_F(WriteRecorderTest, AMacroThatWasCutOffTakesTheNextOneForItsText) {
  Write(SelectAddress(5));
  int left = 8;
  const auto pass = port.onCharacter;
  port.onCharacter = [&](char character) {
    if (left-- == 0) LoseLine();
    if (left >= 0) pass(character);
  };
  Write(WriteMakro(7, "siebensieben"));
  port.onCharacter = pass;
  OpenLine();
  Write(SelectAddress(5));
  EXPECT_FALSE(Write(WriteMakro(8, "acht")).Failed()) << "it is the other one's acknowledge";
  EXPECT_FALSE(Memory(5).Read(sim::Eeprom::Kind::Macro, 8));
  EXPECT_EQ(Macro(Of(5), 8), nullptr);
  Write(SelectAddress(5));
  Write(WriteMakro(8, "acht"));
  EXPECT_NE(Macro(Of(5), 8), nullptr);
}

TEST_F(WriteRecorderTest, ARandomUseNeverLeavesSomethingHeldThatIsNotThere) {
  std::mt19937 random(4711);
  const auto upTo = [&random](int end) { return static_cast<int>(random() % unsigned(end)); };
  const auto text = [&] {
    return std::string(static_cast<std::size_t>(1 + upTo(30)), char('a' + upTo(26)));
  };
  const std::vector<std::function<void()>> uses = {
      [&] { Write(SelectAddress(kAddresses[upTo(3)])); },
      [&] { Write(SelectAddress(upTo(4) == 0 ? 255 : 5)); },
      [&] { Write(WriteMakro(1 + upTo(4), text())); },
      [&] { Write(WriteMakro(1 + upTo(4), text())); },
      [&] { Write(WriteMakro(5, upTo(2) == 0 ? DeleteMakro("1").Text() : RunMakro(6).Text())); },
      [&] { Write(WriteMakro(6, WriteKeyTable("1", "41", ",61").Text() + WriteConfig().Text())); },
      [&] { Write(WriteKeyTable(std::to_string(1 + upTo(2)), upTo(2) == 0 ? "41" : "B8", ",61")); },
      [&] { Write(DeleteKeyTable("1")); },
      [&] { Write(DeleteMakro(std::to_string(1 + upTo(6)))); },
      [&] { Write(WriteBitmap(1, "1,1," + std::to_string(10 + upTo(80)) + ";")); },
      [&] { Write(RunMakro(1 + upTo(6))); },
      [&] {
        if (upTo(4) == 0) Write(upTo(2) == 0 ? EraseEEprom() : DeleteConfig());
      },
      [&] {
        if (upTo(4) == 0) Write(Restart());
      },
      [&] {
        At(static_cast<std::size_t>(upTo(3)))
            .SetFault(upTo(2) == 0 ? sim::Fault::Silent : sim::Fault::None);
      },
      [&] { exchange.SendQuery(AskAddress()); },
      [&] {
        LoseLine();
        OpenLine();
      }};
  int held = 0;
  for (int i = 0; i < 1500; ++i) {
    uses[random() % uses.size()]();
    for (const int address : kAddresses) {
      const Inventory inventory = Of(address);
      for (const auto& [key, item] : inventory.Items()) {
        if (item.broadcast) continue;  // any one of all has answered
        using Kind = sim::Eeprom::Kind;
        const Kind kind = key.kind == ItemKind::Config   ? Kind::Config
                          : key.kind == ItemKind::Macro  ? Kind::Macro
                          : key.kind == ItemKind::Bitmap ? Kind::Bitmap
                                                         : Kind::KeyTable;
        const auto there = Memory(address).Read(kind, static_cast<unsigned char>(key.number));
        ASSERT_TRUE(there) << ItemText(key) << " of " << address << " after " << i;
        if (kind == Kind::Macro) {
          ASSERT_EQ(*there, ItemContent(item.item)) << key.number << " after " << i;
        }
        ++held;
      }
    }
  }
  EXPECT_GT(held, 1000);
}

}  // namespace
}  // namespace kelvo
