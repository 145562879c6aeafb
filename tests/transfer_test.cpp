#include "bus/transfer.h"

#include <gtest/gtest.h>

#include "tests/fakes/bus_world.h"

namespace kelvo {
namespace {

using testing_world::BusWorld;
using testing_world::milliseconds;

const std::string Drawing = "\x1bGP10,10;\x1bGfR60,40;\x1bGP5,5;\x1bGL100,90;";

TEST(TransferTexts, SumsAreReadAsUpToFourHexadecimalDigits) {
  EXPECT_EQ(ReadChecksum("1aF"), 0x1AF);
  EXPECT_EQ(ReadChecksum("FFFF"), 0xFFFF);
  EXPECT_EQ(ReadChecksum("0"), 0);
  for (const char* reply : {"", "-1", "12345", "12G", " 12", "TimeOut", "&H12"}) {
    EXPECT_EQ(ReadChecksum(reply), std::nullopt) << reply;
  }
  EXPECT_EQ(TransferPayload("x"), "\x1bGC\x1b!C0;x");
  // The question counts as well.
  EXPECT_EQ(ExpectedChecksum("A"), 'A' + 27 + 'C' + '?');
  EXPECT_EQ(ExpectedChecksum(std::string(257, '\xFF')), 257 * 255 + 27 + 'C' + '?' - 65536);
}

class TransferTest : public testing::Test, protected BusWorld {
 protected:
  TransferTest() {
    for (const int address : {3, 7, 200}) {
      Add({.address = address});
      entries.push_back({.address = address, .checksum = true, .ticked = true});
    }
  }
  void Send(const std::string& drawing = Drawing) {
    port.written.clear();
    transfer.SendRS485(entries, drawing, [this](std::size_t index) {
      if (entries[index].state == TransferState::Sending)
        percents.push_back(entries[index].percent);
    });
  }
  std::string States() const {
    std::string states;
    for (const TransferEntry& entry : entries) {
      states += std::string(entry.ticked ? "*" : "") + TransferStateText(entry).substr(0, 6) + "|";
    }
    return states;
  }
  /// What went out, without the payload.
  std::string Frame(const std::string& drawing = Drawing) const {
    std::string frame = port.written;
    const std::string payload = TransferPayload(drawing);
    for (std::size_t at; (at = frame.find(payload)) != std::string::npos;) {
      frame.replace(at, payload.size(), "<payload>");
    }
    std::replace(frame.begin(), frame.end(), '\x1b', '~');
    return frame;
  }

  std::vector<TransferEntry> entries;
  std::vector<int> percents;
  Transfer transfer{exchange, loop};
};

TEST_F(TransferTest, AllTickedIsOneBroadcastAndThenOneQuestionEach) {
  Send();
  EXPECT_EQ(Frame(), "~!A255;~C!<payload>~!A254;~!A3;~C?~!A7;~C?~!A200;~C?~!A254;");
  EXPECT_EQ(States(), "gut, P|gut, P|gut, P|");
  loop.RunFor(milliseconds(20));
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(At(i).Display().Pixels().At(30, 20));
    EXPECT_FALSE(At(i).Selected());
  }
  EXPECT_EQ(TransferSummary(entries), "3 gut, 0 falsch, 0 ohne Antwort.");
}

TEST_F(TransferTest, NotAllTickedIsOneAfterTheOther) {
  entries[1].ticked = false;
  entries[2].checksum = false;
  Send();
  EXPECT_EQ(Frame(), "~!A3;~C!<payload>~C?~!A200;~C!<payload>~!A254;");
  EXPECT_EQ(States(), "gut, P||gesend|");
  EXPECT_FALSE(At(1).Display().Pixels().At(30, 20));
  EXPECT_TRUE(At(2).Display().Pixels().At(30, 20));
  Send();
  EXPECT_EQ(Frame(), "~!A254;");
}

TEST_F(TransferTest, BroadcastNeverAsksTerminalsWithoutChecksum) {
  entries[1].checksum = false;
  Send();
  EXPECT_EQ(Frame().find("!A7;"), std::string::npos);
  EXPECT_EQ(States(), "gut, P|gesend|gut, P|");
}

TEST_F(TransferTest, FailedOnesStayTickedAndAreTheOnlyOnesToBeSentAgain) {
  At(0).SetFault(sim::Fault::Garbled);
  At(2).SetFault(sim::Fault::Silent);
  Send();
  EXPECT_EQ(entries[0].ticked, true);
  EXPECT_EQ(entries[1].state, TransferState::Good);
  EXPECT_EQ(entries[2].state, TransferState::NoAnswer);
  At(0).SetFault(sim::Fault::None);
  At(2).SetFault(sim::Fault::None);
  Send();
  EXPECT_EQ(Frame(), "~!A3;~C!<payload>~C?~!A200;~C!<payload>~C?~!A254;");
  EXPECT_EQ(States(), "gut, P|gut, P|gut, P|");
}

TEST_F(TransferTest, WrongSumNamesBoth) {
  entries[1].ticked = false;
  port.onCharacter = [this](char c) {
    if (c == '?' && port.written.ends_with("\033C?")) {
      port.ArriveAfter(milliseconds(3), "1a2b;");
    }
  };
  Send();
  EXPECT_EQ(
      TransferStateText(entries[0]),
      "falsche Prüfsumme: 1A2B statt " + ChecksumText(ExpectedChecksum(TransferPayload(Drawing))));
  EXPECT_EQ(States(), "*falsch||*falsch|");
  EXPECT_EQ(TransferSummary(entries), "0 gut, 2 falsch, 0 ohne Antwort.");
}

TEST_F(TransferTest, AnswerOfALateTerminalIsNotTakenForTheNextOnes) {
  At(0).SetFault(sim::Fault::Late);
  At(1).SetFault(sim::Fault::Silent);
  Send();
  EXPECT_EQ(States(), "*keine |*keine |gut, P|");
}

TEST_F(TransferTest, LongDrawingIsSentInPiecesAndItsProgressShown) {
  std::string drawing;
  while (drawing.size() < 20'000) drawing += "\x1bGP 10, 20;\x1bGL 30, 40;";
  entries[0].ticked = false;
  const double ms = Duration([&] { Send(drawing); });
  EXPECT_EQ(States(), "|gut, P|gut, P|");
  EXPECT_GT(percents.size(), 100U);
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.begin() + 100));
  // The line time, and the wait that begins with the last piece and outlasts it.
  const auto characters = static_cast<double>(TransferPayload(drawing).size());
  const double lineTime = static_cast<double>(port.written.size()) * 0.520833;
  EXPECT_NEAR(ms / (lineTime + 2 * characters / 3), 1, 0.02);
}

TEST_F(TransferTest, StopsAfterThePieceOnTheLineAndSaysWhatWasSent) {
  entries[2].ticked = false;
  loop.After(milliseconds(10), [this] { transfer.Stop(); });
  Send();
  EXPECT_EQ(Frame(), "~!A3;~C!<payload>~!A254;");
  EXPECT_EQ(States(), "*gesend|*offen||");
  EXPECT_EQ(TransferSummary(entries), "0 gut, 0 falsch, 0 ohne Antwort, 1 nicht geprüft, 1 offen.");
  // A broadcast of 14,000 characters, stopped in its first piece: a third of the time.
  entries[2].ticked = true;
  std::string drawing;
  while (drawing.size() < 14'000) drawing += "\x1bGP 10, 20;\x1bGL 30, 40;";
  loop.After(milliseconds(1000), [this] { transfer.Stop(); });
  EXPECT_LT(Duration([&] { Send(drawing); }), 2700);
  EXPECT_TRUE(port.written.ends_with(";\x1b!A254;"));
  EXPECT_EQ(TransferStateText(entries[1]), "abgebrochen, nur zum Teil gesendet");
  EXPECT_EQ(TransferSummary(entries), "0 gut, 0 falsch, 0 ohne Antwort, 3 nur zum Teil.");
  // All was sent, and the Terminals are still drawing.
  loop.After(milliseconds(7600), [this] { transfer.Stop(); });
  EXPECT_LT(Duration([&] { Send(drawing); }), 7800);
  EXPECT_EQ(TransferSummary(entries), "0 gut, 0 falsch, 0 ohne Antwort, 3 nicht geprüft.");
}

TEST_F(TransferTest, LostLineEndsItAndNothingCountsAsSent) {
  for (const bool all : {true, false}) {
    for (const int ms : {1, 5, 10, 15}) {
      port.Open();
      for (TransferEntry& entry : entries) entry.ticked = true;
      entries[0].checksum = false;
      entries[2].ticked = all;
      loop.After(milliseconds(ms), [this] { port.Lose(); });
      Send();
      EXPECT_NE(entries[1].state, TransferState::Good) << all << ms;
      EXPECT_TRUE(entries[0].ticked || ms > 5) << all << ms;
      loop.RunFor(milliseconds(2000));
    }
  }
}

}  // namespace
}  // namespace kelvo
