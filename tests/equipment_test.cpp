#include "inventory/equipment.h"

#include <gtest/gtest.h>

#include "inventory/equip_plan.h"
#include "link/commands.h"

namespace kelvo {
namespace {

TEST(Equipment, OfRecordsThatCannotBeWrittenTheReasonIsTold) {
  const Equipment equipment = EquipmentOf({{0, "Makro", "gut", 7, "\x1bGC"},
                                           {0, "Makro", "ohne", -1, "x"},
                                           {0, "Makro", "ETX", 1,
                                            "a\x03\x1b"
                                            "EE"},
                                           {0, "Makro", "lang", 2, std::string(1024, 'x')},
                                           {0, "MatrixTab", "M", 3,
                                            "\x1b"
                                            "EWK3,80,FF,FF,FF,FF,FF,FF,FF,FF;"},
                                           {0, "ATTab", "A", 3,
                                            "\x1b"
                                            "EWK3,41,61;"},
                                           {0, "ATTab", "mehr", 4,
                                            "\x1b"
                                            "EWK4,41,61;\x1b"
                                            "EE"}},
                                          "Datensätze");
  EXPECT_EQ(equipment.items.size(), 3U);
  EXPECT_EQ(equipment.missing.size(), 4U);
  ASSERT_EQ(Conflicts(equipment.items).size(), 1U);
  EXPECT_EQ(Conflicts(equipment.items)[0].text,
            "Matrix-Tabelle 3 „M“ und AT-Tabelle 3 „A“ haben denselben Platz im Terminal.");
}

TEST(Equipment, ThePlanTellsWhatIsKnownOfTheTargetBeforeItIsAsked) {
  const TerminalId five{"/dev/ttyUSB0", 5};
  const Item item{{ItemKind::Macro, 7}, WriteMakro(7, "neu").Text(), "Pumpe"};
  TargetView view{{five, "Tor", {}}};
  const EquipJob job{{{}, {item}, {}, {}}, {view.target}, false};
  const auto says = [&](const std::string& words) {
    return PlanText(job, {view}).find(words) != std::string::npos;
  };
  EXPECT_TRUE(says("der freie Platz ist nicht gelesen."));
  view.there.Take({JournalTime(), five, Event::FreeBytes, {}, {}, {}, 8192});
  EXPECT_TRUE(says("frei waren 8192 Byte (gelesen ")) << PlanText(job, {view});
  const ItemChange write{ItemChange::Kind::Written, item.key};
  view.there.Take({JournalTime(), five, Event::Acknowledged, write, {}, item.command, 0});
  EXPECT_TRUE(says(", seither geschrieben).")) << PlanText(job, {view});
  view.there.Take({JournalTime(), five, Event::Silent, {ItemChange::Kind::Erased, {}}, {}, {}, 0});
  EXPECT_EQ(OutlookText(OutlookOf(item, &view.there, false), item, &view.there),
            "ungewiss: Löschen: keine Antwort");
}

}  // namespace
}  // namespace kelvo
