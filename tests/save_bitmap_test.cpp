#include "graphics/save_bitmap.h"

#include <gtest/gtest.h>

#include "tests/drawing_samples.h"
#include "tests/fakes/fake_operator.h"

namespace kelvo {
namespace {

class SaveBitmap : public testing::Test {
 protected:
  void Save(int width, int height) {
    const std::vector<Colour> pixels(static_cast<std::size_t>(width * height), White);
    const Drawing drawing = {PictureAt({0, 100}, Picture(width, height, pixels))};
    SaveBMPinEEProm(drawing, {}, person_, eeprom_);
  }

  testing_world::FakeOperator person_;
  std::vector<std::string> sent_;
  double free_ = 8000;
  std::string error_;
  EEPromAccess eeprom_{[this] { return free_; },
                       [this](const std::string& command) {
                         sent_.push_back(command);
                         return error_;
                       }};
};

TEST_F(SaveBitmap, SendsTheBitmapUnderItsNumber) {
  person_.inputs = {{"7"}};
  Save(9, 1);
  EXPECT_EQ(sent_, std::vector<std::string>{"\x1b"
                                            "EWB7,2,1,0000;"});
  EXPECT_EQ(person_.prompts, std::vector<std::string>{"Nr dieser Bitmap im EEProm :|"});
  EXPECT_TRUE(person_.messages.empty());
  EXPECT_TRUE(person_.questions.empty());
}

TEST_F(SaveBitmap, AsksBeforeALargeOne) {
  Save(64, 128);
  EXPECT_EQ(person_.questions,
            std::vector<std::string>{"Bitmap 1024 Zeichen lang, trotzdem übertragen ?"});
  EXPECT_TRUE(person_.prompts.empty());
  person_.answers = {true};
  person_.inputs = {{"0"}};
  Save(64, 128);
  EXPECT_EQ(sent_.size(), 1U);
}

TEST_F(SaveBitmap, SaysWhyNothingIsSent) {
  SaveBMPinEEProm({}, {}, person_, eeprom_);
  EXPECT_EQ(person_.LastMessage(), "Die Zeichnung enthält kein Bild.");
  person_.inputs = {{"x"}, {"256"}, std::nullopt};
  Save(8, 1);
  EXPECT_EQ(person_.LastMessage(), "nur Ziffern erlaubt");
  Save(8, 1);
  EXPECT_EQ(person_.LastMessage(), "nur Ziffern von 0 bis 255 erlaubt");
  Save(8, 1);  // cancelled: no word
  EXPECT_EQ(person_.messages.size(), 3U);
  free_ = 26;  // the text "1,1,00;" has 7 characters
  Save(8, 1);
  EXPECT_EQ(person_.LastMessage(), "nicht genügend Platz im EEprom");
  EXPECT_TRUE(sent_.empty());
}

TEST_F(SaveBitmap, ReportsWhatTheTerminalSays) {
  person_.inputs = {{"1"}, {"1"}};
  error_ = "EEPROM";
  Save(8, 1);
  EXPECT_EQ(person_.LastMessage(), "Fehler beim EEPROM");
  error_ = "keine Reaktion";
  Save(8, 1);
  EXPECT_EQ(person_.LastMessage(), "keine Reaktion / cmdSaveBMPinEEprom");
}

}  // namespace
}  // namespace kelvo
