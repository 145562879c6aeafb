#include "inventory/proven_write.h"

#include <gtest/gtest.h>

#include "link/commands.h"
#include "tests/fakes/bus_world.h"

namespace kelvo {
namespace {

using sim::Fault;
using testing_world::BusWorld;
using testing_world::milliseconds;

Item Macro(int number, const std::string& text) {
  return {{ItemKind::Macro, number}, WriteMakro(number, text).Text(), "Logo"};
}

class ProvenWriteTest : public testing::Test, protected BusWorld {
 protected:
  ProvenWriteTest() {
    Add({.address = 3});
    Add({.address = 4});
  }
  std::string Write(int address, const Item& item, bool canSum = true) {
    port.written.clear();
    result = ProvenWrite(exchange, loop).Write(address, canSum, item);
    return VerdictText(result.verdict);
  }
  std::optional<std::string> Stored(std::size_t terminal, int number) {
    return At(terminal).Memory().Read(sim::Eeprom::Kind::Macro, static_cast<unsigned char>(number));
  }

  WriteResult result;
};

TEST_F(ProvenWriteTest, ItsAddressIsAskedForFirstAndItsSumAfterwards) {
  EXPECT_EQ(Write(3, Macro(7, "\x1bGC")), "empfangen und bestätigt");
  EXPECT_EQ(port.written,
            "\x1b!A3;\x1b?A\x1b"
            "C!" +
                Macro(7, "\x1bGC").command +
                "\x1b"
                "C?");
  EXPECT_EQ(Stored(0, 7), "\x1bGC");
  EXPECT_EQ(Stored(1, 7), std::nullopt);
  At(1).SetFault(Fault::Slow);
  line.line.SetEcho(true);
  EXPECT_EQ(Write(4, Macro(7, "slow")), "empfangen und bestätigt");
  EXPECT_EQ(Write(4, Macro(7, "none"), false), "bestätigt, ohne Prüfsumme");
  EXPECT_EQ(port.written.find("\x1b"
                              "C"),
            std::string::npos);
}

TEST_F(ProvenWriteTest, EachFailureHasItsWordsAndNothingIsWrittenToWhoDoesNotAnswer) {
  EXPECT_EQ(Write(9, Macro(1, "x")), "nicht geschrieben");
  EXPECT_EQ(port.written, "\x1b!A9;\x1b?A");
  EXPECT_FALSE(result.sent);
  for (const Fault fault : {Fault::Silent, Fault::Late, Fault::Garbled}) {
    At(0).SetFault(fault);
    EXPECT_EQ(Write(3, Macro(1, "x")), "nicht geschrieben");
    EXPECT_EQ(Stored(0, 1), std::nullopt);
    // What came late was not left to the next one.
    EXPECT_EQ(Write(4, Macro(1, "y")), "empfangen und bestätigt");
  }
  At(0).SetFault(Fault::Nak);
  EXPECT_EQ(Write(3, Macro(1, "x")), "nicht bestätigt");
  EXPECT_EQ(result.detail, "das Terminal hat es abgelehnt (NAK)");
  EXPECT_TRUE(result.sent);
}

TEST_F(ProvenWriteTest, WhatHappensInTheMiddleIsToldApart) {
  const std::string middle = Macro(1, "te").command.substr(1, 6);
  const auto strike = [this](const std::string& behind, auto action) {
    port.onCharacter = [behind, action, left = std::string(),
                        pass = port.onCharacter](char c) mutable {
      left += c;
      if (left.ends_with(behind)) action();
      pass(c);
    };
  };
  const auto undisturbed = port.onCharacter;
  strike(middle, [this] { At(0).SetFault(Fault::Silent); });
  EXPECT_EQ(Write(3, Macro(1, "text")), "nicht bestätigt");
  EXPECT_EQ(result.detail, "keine Reaktion; ob es geschrieben wurde, ist offen");
  At(0).SetFault(Fault::None);
  port.onCharacter = undisturbed;
  strike(middle, [this] { At(0).SetFault(Fault::Garbled); });
  EXPECT_EQ(Write(3, Macro(1, "text")), "nicht bestätigt");
  EXPECT_TRUE(result.detail.starts_with("statt ACK kam ")) << result.detail;
  At(0).SetFault(Fault::None);
  port.onCharacter = undisturbed;
  strike(
      "\x1b"
      "C?",
      [this] { At(0).SetFault(Fault::Silent); });
  EXPECT_EQ(Write(3, Macro(1, "text")), "bestätigt, aber nicht geprüft");
  At(0).SetFault(Fault::None);
  port.onCharacter = undisturbed;
  strike(middle, [this] { port.Lose(); });
  EXPECT_EQ(Write(3, Macro(1, "text")), "Verbindung verloren");
  EXPECT_TRUE(result.sent);
}

// Whatever a Terminal mishears, wherever: what is called proven lies there as it was sent, or has
// an equal sum.
TEST_F(ProvenWriteTest, NothingIsCalledProvenThatHasArrivedOtherwise) {
  int proven = 0;
  int other = 0;
  int equalSums = 0;
  for (const Fault fault : {Fault::Drops, Fault::Doubles, Fault::Flips}) {
    for (int every = 5; every < 80; ++every) {
      BusWorld world{{.address = 3, .fault = fault, .faultEvery = every}};
      const std::string text = "Text " + std::to_string(every) + " \x1bGL 30, 40;\x1bGfR 1, 2;";
      const WriteResult one =
          ProvenWrite(world.exchange, world.loop).Write(3, true, Macro(5, text));
      const auto stored = world.At(0).Memory().Read(sim::Eeprom::Kind::Macro, 5);
      const bool isProven = one.verdict == WriteVerdict::Proven;
      proven += isProven ? 1 : 0;
      // Two flips of the same bit in opposite directions are what no sum can tell.
      equalSums += isProven && fault == Fault::Flips && stored != text ? 1 : 0;
      EXPECT_FALSE(isProven && fault != Fault::Flips && stored != text) << every;
      other += one.verdict == WriteVerdict::WrongSum ? 1 : 0;
    }
  }
  EXPECT_GT(proven, 10);
  EXPECT_LT(equalSums, 5);
  EXPECT_GT(other, 50);
}

}  // namespace
}  // namespace kelvo
