#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "bus/terminal_search.h"
#include "tests/random_twin_world.h"

namespace kelvo::testing_world {
namespace {

// What brings certainty, step by step: an answer, a clear, and each setting that is drawn with.
TEST(Twins, BeginInDoubtAndGainCertainty) {
  TwinWorld world({{.address = 5}, {.address = 6}});
  world.Real(5)->Type('x', world.loop.Now());
  world.Say(Esc + "!A5;" + Esc + "GC");
  EXPECT_FALSE(world.Certain(5)) << "nobody has answered";
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::NeverAnswered);
  world.Query("?V");
  world.Say(Esc + "GP9,9;" + Esc + "GfR30,30;");
  EXPECT_FALSE(world.Certain(5)) << "not cleared since";
  world.Say(Esc + "GC" + Esc + "GfR30,30;");
  world.ExpectRight(5, "clear, known position and pen");
  world.Say(Esc + "TH" + "x");
  EXPECT_FALSE(world.Certain(5)) << "fonts and mode are not known";
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::UnknownSettings);
  for (const char* letters : {"T?F", "T?A", "T?M", "T?Z"}) world.Query(letters);
  world.Say(Esc + "GC" + Esc + "TH" + "Guten Tag\r\n");
  world.ExpectRight(5, "what was read counts");
  EXPECT_EQ(world.twins.Of(6), nullptr) << "never spoken with";
}

// Nothing is known at first of what each text is sent to; "$" stands for ESC.
TEST(Twins, SpreadDoubtOverWhatItTouches) {
  const std::string cell = "$TF1;$TZ1,1;";
  const std::string style = cell + "$TA0;$TM0;";
  const struct {
    std::string text;
    bool certain;
  } cases[] = {{"$GC$GP3,3;$GR9,9;", true},
               {"$GC$GR9,9;", false},
               {"$GL9,9;$GC$GL3,3;", true},
               {"$GC$GM1;$GB0,0,1,1,FF;", true},
               {"$GM0;$GB0,0,1,1,FF;", false},
               {"$GF1;$GZ1,1;$GA0;$GC$GP1,1;$GTx\x04$GL9,9;", true},
               {"$GF1;$GA0;$GC$GP1,1;$GTx\x04", false},
               {"$GP1,1;$GTx\x04$GC$GR9,9;", false},
               {style + "$GC$THab\r\nc\b", true},
               {cell + "$TM0;$GC$THx", false},
               {"$TP1,1;" + style + "$GCx", true},
               {"$TP50,1;" + style + "$GCx", false},
               {"$TH\n" + style + "$GCx", false},
               {"$TP50,1;" + style + "x\r$GCx", false},
               {"$GC$!C0;$!c1,1;", true},
               {"$R$GP1,1;$GR9,9;", true},
               {"$Rx", false},
               {style + "$TH$GC$Rx", false}};
  for (const auto& c : cases) {
    TwinWorld world({{.address = 5}});
    world.memory.makros[0] = std::nullopt;
    world.Say(Esc + "!A5;");
    world.Query("?V");
    std::string text = c.text;
    std::replace(text.begin(), text.end(), '$', '\x1B');
    world.Say(text);
    EXPECT_EQ(world.Certain(5), c.certain) << c.text;
    if (c.certain) world.ExpectRight(5, c.text);
  }
}

// What was stored while it was known is known again after a restart.
TEST(Twins, KnowTheStoredConfigurationAgain) {
  for (const bool stored : {true, false}) {
    TwinWorld world({{.address = 5}});
    world.memory.makros[0] = std::nullopt;
    world.Say(Esc + "!A5;" + Esc + "TF2;" + Esc + "TZ1,2;" + Esc + "TA4;" + Esc + "TM0;");
    world.Query("?V");
    for (const char* letters : {"T?F", "T?A", "T?M", "T?Z"}) world.Query(letters);
    if (stored) world.Write(Esc + "EWC");
    world.Say(Esc + "R" + "Guten Tag");
    EXPECT_EQ(world.Certain(5), stored);
    if (stored) world.ExpectRight(5, "stored");
  }
}

TEST(Twins, KnowWhatTheyCannotKnow) {
  TwinWorld world({{.address = 5}});
  const std::string fresh = Esc + "GC" + Esc + "GP1,1;" + Esc + "GfR9,9;";
  const auto clear = [&] {
    world.Query("?V");
    world.Say(fresh);
    world.ExpectRight(5, "clear");
  };
  world.Say(Esc + "!A5;");
  clear();
  world.Say(RandomMacros::Call(9));
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::UnknownMakro);
  clear();
  world.Write(Esc + "EWM9," + Esc + "GfR70,70;\x03");
  world.Say(RandomMacros::Call(9));
  world.ExpectRight(5, "a macro that was written from here");
  world.Real(5)->SetFault(sim::Fault::Nak);
  world.Write(Esc + "EWM9,x\x03");
  world.Real(5)->SetFault(sim::Fault::None);
  world.Say(RandomMacros::Call(9));
  EXPECT_FALSE(world.Certain(5)) << "refused";
  clear();
  world.Say(Esc + "R");
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::UnknownStart);
  clear();
  world.Real(5)->PowerOff();
  world.Query("?V");
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::Silent);
  world.Say(fresh);
  EXPECT_FALSE(world.Certain(5)) << "off, for all that is known";
  world.Real(5)->PowerOn(world.loop.Now());
  clear();
  // What is heard wrong shows in the sum.
  world.Query("T?P");
  world.Say(Esc + "C!");
  world.Settle();
  world.Real(5)->SetFault(sim::Fault::Flips);
  world.Say(Esc + "GR100,100;" + Esc + "GR50,90;");
  world.Settle();
  world.Real(5)->SetFault(sim::Fault::None);
  EXPECT_TRUE(world.Certain(5));
  world.Query("C?");
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::OtherSum);
  clear();
  world.port.SetUp("9600,N,8,1", Handshaking::XOnXOff);
  world.port.SetUp("19200,N,8,1", Handshaking::XOnXOff);
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::LineSetAnew);
  clear();
  world.Say(std::string(400, 'x'));
  world.exchange.SendString(Esc + "TH", Pending::Discard);
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::SendingCut);
  clear();
  world.port.Lose();
  world.twins.PortLost();
  EXPECT_EQ(world.Of(5).knowledge.Why(), TwinDoubt::LineLost);
  world.port.Open();
  world.twins.PortIs(2);
  EXPECT_EQ(world.twins.Of(5), nullptr) << "others hang on another port";
}

// While no address is chosen the one Terminal has no name; its answer gives it one.
TEST(Twins, KeepWhatIsKnownWhenTheAddressIsTold) {
  TwinWorld world({{.address = 7}});
  world.memory.makros[3] = Esc + "GfR50,50;";
  world.Real(7)->Memory().Write(sim::Eeprom::Kind::Macro, 3, *world.memory.makros[3]);
  world.twins.MemoryKnownAnew();
  world.Query("?V");
  world.Say(Esc + "GC" + Esc + "GP5,5;" + RandomMacros::Call(3));
  world.Settle();
  ASSERT_NE(world.twins.Present(), nullptr);
  EXPECT_TRUE(world.twins.Present()->OnlySizeAssumed());
  EXPECT_FALSE(world.twins.PresentAddress());
  world.Query("?A");
  world.ExpectRight(7, "the same one");
  EXPECT_EQ(world.twins.PresentAddress(), 7);
  world.Say(Esc + "!A8;" + Esc + "GC");
  world.Say(Esc + "!A255;" + Esc + "GR80,80;");
  world.ExpectRight(7, "all are one of them");
}

// What it draws lies outside of a small display, and on a large one there is more of it.
TEST(Twins, ClaimNoPictureOfASizeThatIsOnlyAssumed) {
  TwinWorld world({{.address = 1, .width = 128, .height = 64},
                   {.address = 2},
                   {.address = 3, .width = 320, .height = 240}});
  TerminalState state;
  TerminalSearch search({world.exchange, state, [&world] {
                           world.port.Close();
                           return world.port.Open() == PortOk;
                         }});
  search.Run(5, 2.0, [](const auto&) {});
  for (const int address : {1, 2, 3}) {
    EXPECT_FALSE(world.Of(address).Certain()) << address;
    EXPECT_TRUE(world.Of(address).OnlySizeAssumed()) << address;
  }
  for (const int address : {4, 5}) EXPECT_EQ(world.twins.Of(address), nullptr) << address;
  for (const int address : {1, 2, 3}) {
    world.Say(Esc + "!A" + std::to_string(address) + ";");
    world.AskInfo();
    world.Say(FoundDisplay(address));
    EXPECT_TRUE(world.Of(address).Certain()) << address;
    world.ExpectRight(address, "its size is told");
  }
}

// More of them: KELVO_TWIN_WORLDS=1000.
TEST(Twins, AreRightWheneverTheyDoNotDoubt) {
  const char* const more = std::getenv("KELVO_TWIN_WORLDS");
  const int worlds = more != nullptr ? std::atoi(more) : 40;
  constexpr int kSteps = 40;
  int statements = 0;
  int doubts = 0;
  for (int run = 0; run < worlds && !::testing::Test::HasFailure(); ++run) {
    RandomWorld world(static_cast<unsigned>(run));
    for (int step = 0; step < kSteps && !::testing::Test::HasFailure(); ++step) {
      world.Step();
      world.Compare("world " + std::to_string(run) + ", step " + std::to_string(step));
      if (::testing::Test::HasFailure()) std::cout << world.LastWrites();
    }
    statements += world.statements;
    doubts += world.doubts;
  }
  std::cout << statements << " statements, unknown: " << 100 * doubts / std::max(1, statements)
            << " %\n";
  EXPECT_LT(doubts, statements * 9 / 10) << "who doubts everything is never wrong";
}

}  // namespace
}  // namespace kelvo::testing_world
