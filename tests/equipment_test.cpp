#include "inventory/equipment.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kelvo
