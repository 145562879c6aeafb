#include "inventory/journal.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "inventory/journal_text.h"
#include "inventory/statement_words.h"
#include "link/addresses.h"
#include "link/commands.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::ReadFile;
using testing_world::TemporaryFolder;

constexpr char kDevice[] = "/dev/ttyS0";

std::string AllCharacters() {
  std::string text;
  for (int code = 0; code < 256; ++code) {
    if (code != 3) text += static_cast<char>(code);  // ends a macro
  }
  return text;
}

class Entries {
 public:
  JournalEntry Of(Event event, int address, std::string_view command, std::string name = {}) {
    const ItemChange change = ChangeOf(command).value_or(ItemChange{});
    const bool keeps = event == Event::Acknowledged && change.kind == ItemChange::Kind::Written;
    return {Next(), {kDevice, address}, event,
            change, std::move(name),    keeps ? std::string(command) : std::string()};
  }
  JournalEntry Free(int address, std::int64_t bytes) {
    return {Next(), {kDevice, address}, Event::FreeBytes, {}, {}, {}, bytes};
  }

 private:
  JournalTime Next() {
    return JournalTime(std::chrono::milliseconds(1'790'000'000'123 + ++count_));
  }
  int count_ = 0;
};

class JournalTest : public testing::Test {
 protected:
  void Did(int address, const Command& command, std::string name = {}) {
    journal.Add(entries.Of(Event::Begun, address, command.Text(), name));
    journal.Add(entries.Of(Event::Acknowledged, address, command.Text(), std::move(name)));
  }
  void Happened(Event event, int address, const Command& command) {
    journal.Add(entries.Of(event, address, command.Text()));
  }
  std::string Macro(int address, int number) {
    const Inventory inventory = journal.Of({kDevice, address});
    const ItemKey key{ItemKind::Macro, number};
    if (inventory.DoubtAt(key) != nullptr) return "?";
    const Held* held = inventory.At(key);
    return held == nullptr ? "-" : std::string(ItemContent(held->item));
  }
  Entries entries;
  WriteJournal journal;
};

TEST_F(JournalTest, WhatWasAcknowledgedLiesThereUntilItIsDeletedOrErased) {
  Did(5, WriteMakro(7, "a,b;c"), "Gruß");
  Did(5, WriteMakro(8, "acht"));
  Did(5, WriteBitmap(7, "1,2,FF00;"));
  EXPECT_EQ(Macro(5, 7), "a,b;c");
  EXPECT_EQ(Macro(6, 7), "-");
  Did(5, DeleteMakro("8"));
  const Inventory inventory = journal.Of({kDevice, 5});
  EXPECT_EQ(inventory.Items().size(), 2u);
  EXPECT_EQ(inventory.At({ItemKind::Macro, 7})->item.name, "Gruß");
  EXPECT_TRUE(inventory.KnownEmpty({ItemKind::Macro, 8}));
  EXPECT_FALSE(inventory.KnownEmpty({ItemKind::Macro, 9}));
  Did(5, EraseEEprom());
  EXPECT_TRUE(journal.Of({kDevice, 5}).Items().empty());
  EXPECT_TRUE(journal.Of({kDevice, 5}).KnownEmptyBefore());
}

TEST_F(JournalTest, TheTablesOfBothKeyboardsTakeEachOthersPlace) {
  Did(5, WriteKeyTable("3", "41", ",61"));
  EXPECT_EQ(journal.Of({kDevice, 5}).At({ItemKind::MatrixTable, 3})->item.key.kind,
            ItemKind::AtTable);
  Did(5, WriteKeyTable("3", "B8", ",1,2,3,4,5,6,7,8"));
  const Inventory inventory = journal.Of({kDevice, 5});
  EXPECT_EQ(inventory.Items().size(), 1u);
  EXPECT_EQ(inventory.Items().begin()->first, (ItemKey{ItemKind::MatrixTable, 3}));
  Did(5, DeleteKeyTable("3"));
  EXPECT_TRUE(journal.Of({kDevice, 5}).Items().empty());
}

TEST_F(JournalTest, WhatEndedOtherwiseLeavesAPlaceInDoubt) {
  const Event ends[] = {Event::Begun,    Event::Refused,  Event::Silent, Event::Unclear,
                        Event::LineLost, Event::WrongSum, Event::ByMacro};
  for (const Event end : ends) {
    Did(5, WriteMakro(7, "alt"));
    ASSERT_EQ(Macro(5, 7), "alt");
    Happened(end, 5, WriteMakro(7, "neu"));
    EXPECT_EQ(Macro(5, 7), "?") << EventText(end);
  }
  Did(5, WriteMakro(7, "neu"));
  Did(5, WriteMakro(8, "acht"));
  Happened(Event::Begun, 5, EraseEEprom());
  Happened(Event::Silent, 5, EraseEEprom());
  EXPECT_EQ(Macro(5, 8), "?");
  const Inventory five = journal.Of({kDevice, 5});
  EXPECT_EQ(five.DoubtAt({ItemKind::Macro, 8})->event, Event::Silent) << "not begun for good";
  EXPECT_FALSE(five.DoubtAt({ItemKind::Macro, 8})->cutOff);
}

TEST_F(JournalTest, ADoubtKeepsWhatWasWrittenAndADeletionMakesNoneWhereNothingWas) {
  const auto doubts = [this](int address) {
    return journal.Of({kDevice, address}).Doubtful().size();
  };
  Did(1, DeleteKeyTable("77"));
  Happened(Event::Silent, 1, DeleteKeyTable("78"));
  Did(kAllAddresses, DeleteKeyTable("79"));
  EXPECT_EQ(doubts(kUnknownAddress) + doubts(1) + doubts(kAllAddresses), 0u);
  EXPECT_TRUE(journal.Of({kDevice, 1}).KnownEmpty({ItemKind::MatrixTable, 77}));

  Did(5, WriteKeyTable("3", "41", ",61"), "Zehner");
  const JournalTime written = journal.Entries().back().time;
  Happened(Event::Silent, 5, DeleteKeyTable("3"));
  Happened(Event::ByMacro, 5, EraseEEprom());
  const Inventory five = journal.Of({kDevice, 5});
  ASSERT_EQ(five.Doubtful().size(), 1u);
  const auto& [key, doubt] = *five.Doubtful().begin();
  EXPECT_EQ(key, (ItemKey{ItemKind::AtTable, 3}));
  EXPECT_EQ(doubt.event, Event::Silent);
  EXPECT_EQ(doubt.change, ItemChange::Kind::Deleted);
  ASSERT_TRUE(doubt.before);
  EXPECT_EQ(doubt.before->item.name, "Zehner");
  EXPECT_EQ(doubt.before->written, written);
}

TEST_F(JournalTest, WhatWentToAllCountsForEachAndToAnUnknownOneForNone) {
  Did(5, WriteMakro(7, "fünf"));
  Did(6, WriteMakro(7, "sechs"));
  Did(kAllAddresses, WriteMakro(7, "alle"));
  EXPECT_EQ(Macro(5, 7) + Macro(6, 7), "allealle");
  const Inventory five = journal.Of({kDevice, 5});
  EXPECT_FALSE(five.Trusts(*five.At({ItemKind::Macro, 7}))) << "any one may have answered";
  Did(kAllAddresses, DeleteMakro("8"));
  EXPECT_FALSE(journal.Of({kDevice, 5}).KnownEmpty({ItemKind::Macro, 8}));
  EXPECT_EQ(journal.Terminals().size(), 2u) << "those that are known by themselves";
  Did(6, WriteMakro(7, "sechs"));
  EXPECT_EQ(Macro(5, 7) + Macro(kAllAddresses, 7), "alle?");
  Did(kUnknownAddress, WriteMakro(7, "wer"));
  EXPECT_EQ(Macro(5, 7) + Macro(6, 7) + Macro(kUnknownAddress, 7), "??wer");
  const auto rests = [this](int address) {
    return RestsWords(*journal.Of({kDevice, address}).DoubtAt({ItemKind::Macro, 7}));
  };
  EXPECT_EQ(rests(5), "bestätigt, aber nicht bekannt, von wem");
  Did(5, WriteMakro(7, "fünf"));
  EXPECT_EQ(rests(kUnknownAddress), "an Adresse 5 bestätigt; ob sie zuhört, ist offen");
  Happened(Event::Silent, 5, EraseEEprom());
  EXPECT_EQ(rests(kUnknownAddress), "Löschen: an Adresse 5: keine Antwort");
  EXPECT_EQ(rests(5), "Löschen: keine Antwort");
  Happened(Event::Silent, 9, WriteMakro(1, "x"));
  EXPECT_EQ(journal.Terminals().size(), 3u) << "nobody has ever answered under 9";
}

TEST_F(JournalTest, FreeBytesThatCannotComeFromWhatWasWrittenPutAllBeforeInDoubt) {
  const auto trusted = [this] {
    const Inventory inventory = journal.Of({kDevice, 5});
    return inventory.Trusts(*inventory.At({ItemKind::Macro, 7}));
  };
  const std::string text(200, 'x');
  Did(5, EraseEEprom());
  journal.Add(entries.Free(5, 8000));
  Did(5, WriteMakro(7, text));
  journal.Add(entries.Free(5, 7796));
  Did(5, WriteMakro(7, text));  // in its own place
  journal.Add(entries.Free(5, 7796));
  Did(5, WriteKeyTable("3", "41", ",61"));
  journal.Add(entries.Free(5, 7790));
  Did(5, DeleteKeyTable("3"));
  journal.Add(entries.Free(5, 7796));
  EXPECT_TRUE(trusted());
  EXPECT_TRUE(journal.Of({kDevice, 5}).KnownEmpty({ItemKind::Bitmap, 1}));
  Did(5, WriteMakro(9, text));
  journal.Add(entries.Free(5, 7590));
  EXPECT_TRUE(trusted());
  Did(5, WriteMakro(10, text));
  journal.Add(entries.Free(5, 7490));
  EXPECT_FALSE(trusted()) << "it needs more";
  EXPECT_FALSE(journal.Of({kDevice, 5}).KnownEmpty({ItemKind::Bitmap, 1}));
  Did(5, WriteMakro(7, text));
  EXPECT_TRUE(trusted());
  journal.Add(entries.Free(5, 7490));
  EXPECT_TRUE(trusted());
  journal.Add(entries.Free(5, 7489));
  EXPECT_FALSE(trusted()) << "nothing was written since";
  Happened(Event::Silent, 5, WriteMakro(9, text));
  Did(5, WriteMakro(7, text));
  journal.Add(entries.Free(5, 100));
  EXPECT_TRUE(trusted()) << "nobody knows what was done";
}

TEST_F(JournalTest, TenThousandEntriesAreFoldedOnce) {
  for (int i = 0; i < 10'000; ++i) {
    journal.Add(entries.Of(Event::Acknowledged, i % 5, WriteMakro(i % 256, "x").Text()));
  }
  EXPECT_EQ(journal.Of({kDevice, 3}).Items().size(), 256u);
}

class JournalFileTest : public testing::Test {
 protected:
  JournalEntry Macro(const std::string& text, const std::string& name = {}) {
    return entries.Of(Event::Acknowledged, 5, WriteMakro(7, text).Text(), name);
  }
  TemporaryFolder folder;
  std::string path = folder.Path(kJournalFile);
  Entries entries;
};

TEST_F(JournalFileTest, EveryEntryComesBackAsItWas) {
  std::vector<JournalEntry> all = {Macro(AllCharacters(), "Gruß\t\\ „x“\n"), entries.Free(5, 8142)};
  const Event events[] = {Event::Begun,   Event::Proven,   Event::Refused,
                          Event::Silent,  Event::Unclear,  Event::LineLost,
                          Event::ByMacro, Event::WrongSum, Event::NotRecorded};
  const Command commands[] = {WriteConfig(),
                              DeleteConfig(),
                              EraseEEprom(),
                              DeleteMakro("255"),
                              WriteBitmap(0, "1,1,80;"),
                              WriteKeyTable("3", "41", ",61")};
  for (const Event event : events) {
    for (const Command& command : commands) {
      for (const int address : {0, kAllAddresses, kUnknownAddress}) {
        all.push_back(entries.Of(event, address, command.Text(), "Name"));
      }
    }
  }
  WriteJournal journal(path);
  for (const JournalEntry& entry : all) EXPECT_TRUE(journal.Add(entry));
  EXPECT_EQ(journal.Entries(), all);
  EXPECT_EQ(WriteJournal(path).Entries(), all);
  const std::string text = ReadFile(path);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), static_cast<long>(all.size()));
}

TEST_F(JournalFileTest, ATornLineCostsOnlyItselfWhereverItIsTorn) {
  const JournalEntry first = Macro("eins");
  const JournalEntry second = Macro("zwei");
  const std::string torn = JournalLine(second);
  for (std::size_t length = 1; length < torn.size() - 1; length += 3) {
    std::ofstream(path, std::ios::binary) << JournalLine(first) << torn.substr(0, length);
    WriteJournal journal(path);
    ASSERT_EQ(journal.Entries(), std::vector{first}) << length;
    journal.Add(second);
    ASSERT_EQ(journal.Entries(), (std::vector{first, second})) << length;
    ASSERT_EQ(journal.Unreadable(), 1u);
  }
}

TEST_F(JournalFileTest, TwoProgramsAppendAndReadEachOther) {
  constexpr int kEach = 60;
  const std::string text(900, 'x');
  const pid_t other = fork();
  ASSERT_GE(other, 0);
  WriteJournal journal(path);
  for (int i = 0; i < kEach; ++i) journal.Add(Macro(text));
  if (other == 0) _exit(0);
  int status = -1;
  waitpid(other, &status, 0);
  journal.Refresh();
  EXPECT_EQ(status, 0);
  EXPECT_EQ(journal.Entries().size(), 2u * kEach);
  EXPECT_EQ(journal.Unreadable(), 0u);
}

TEST_F(JournalFileTest, WhatCannotBeRecordedIsToldOnceAndNotCalledHeld) {
  WriteJournal journal(folder.Path("missing/bestand.txt"));
  std::vector<std::string> told;
  journal.SetFailureListener([&told](const std::string& reason) { told.push_back(reason); });
  EXPECT_FALSE(journal.Add(Macro("eins")));
  EXPECT_FALSE(journal.Add(Macro("zwei")));
  EXPECT_EQ(told, std::vector<std::string>{"nicht gefunden"});
  EXPECT_TRUE(journal.Of({kDevice, 5}).Items().empty());
  EXPECT_EQ(journal.Of({kDevice, 5}).Doubtful().size(), 1u);
  std::filesystem::create_directory(folder.Path("missing"));
  EXPECT_TRUE(journal.Add(Macro("drei")));
  EXPECT_EQ(journal.Of({kDevice, 5}).Items().size(), 1u);
}

}  // namespace
}  // namespace kelvo
