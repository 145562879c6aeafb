#include "graphics/save_bitmap.h"

#include <gtest/gtest.h>

#include "tests/drawing_samples.h"
#include "tests/fakes/fake_operator.h"

namespace kelvo {
namespace {

class SaveBitmap : public testing::Test {
 protected:
  void Save(int width, int height) {
    const std::vector<Colour> pixels(static_cast<std::size_t>(width * height), kWhite);
    const Drawing drawing = {PictureAt({0, 100}, Picture(width, height, pixels))};
    SaveBMPinEEProm(drawing, {}, person_, eeprom_);
  }

  testing_world::FakeOperator person_;
  std::vector<std::string> sent_;
  bool hasRoom_ = true;
  std::size_t asked_ = 0;
  std::string suffix_;
  EEPromAccess eeprom_{[this](std::size_t bytes) {
                         asked_ = bytes;
                         return hasRoom_;
                       },
                       [this](const Command& command, const std::string& suffix) {
                         sent_.push_back(command.Text());
                         suffix_ = suffix;
                       }};
};

TEST_F(SaveBitmap, SendsTheBitmapUnderItsNumber) {
  person_.inputs = {{"7"}};
  Save(9, 1);
  EXPECT_EQ(sent_, std::vector<std::string>{"\033EWB7,2,1,0000;"});
  EXPECT_EQ(suffix_, " / cmdSaveBMPinEEprom");
  EXPECT_EQ(person_.prompts, std::vector<std::string>{"Nr dieser Bitmap im EEProm :|"});
  EXPECT_TRUE(person_.messages.empty());
  EXPECT_TRUE(person_.questions.empty());
}

TEST_F(SaveBitmap, AsksBeforeALargeOne) {
  Save(64, 127);
  EXPECT_TRUE(person_.questions.empty());
  person_.prompts.clear();
  Save(64, 128);
  EXPECT_EQ(person_.questions,
            std::vector<std::string>{"Bitmap 1024 Zeichen lang, trotzdem übertragen ?"});
  EXPECT_TRUE(person_.prompts.empty());
  person_.answers = {true};
  person_.inputs = {{"0"}};
  Save(64, 128);
  EXPECT_EQ(sent_.size(), 1U);
}

TEST_F(SaveBitmap, TakesNumbersFrom0To255) {
  const std::string noNumber = "nur Ziffern erlaubt";
  const std::string outOfRange = "nur Ziffern von 0 bis 255 erlaubt";
  for (const std::string typed : {"0", "255", " 07 ", "-0"}) {
    person_.inputs = {typed};
    Save(8, 1);
    EXPECT_TRUE(person_.messages.empty()) << typed;
  }
  EXPECT_EQ(sent_.size(), 4U);
  for (const auto& [typed, refusal] : {std::pair("", noNumber),
                                       {"x", noNumber},
                                       {"1x", noNumber},
                                       {"-", noNumber},
                                       {"1.5", noNumber},
                                       {"&H1", noNumber},
                                       {"256", outOfRange},
                                       {"-1", outOfRange},
                                       {"99999999999999999999", outOfRange}}) {
    person_.inputs = {typed};
    Save(8, 1);
    EXPECT_EQ(person_.LastMessage(), refusal) << typed;
  }
  EXPECT_EQ(sent_.size(), 4U);
}

TEST_F(SaveBitmap, SaysWhyNothingIsSent) {
  SaveBMPinEEProm({GroupOf({}), Boxed(Kind::Rectangle, {1, 1}, {0, 0})}, {}, person_, eeprom_);
  EXPECT_EQ(person_.LastMessage(), "Die Zeichnung enthält kein Bild.");
  Save(8, 1);  // cancelled: no word
  EXPECT_EQ(person_.messages.size(), 1U);
  hasRoom_ = false;  // which is said where the Terminal is asked
  person_.inputs = {{"1"}};
  Save(8, 1);
  EXPECT_EQ(asked_, 7U);  // "1,1,00;"
  EXPECT_EQ(person_.messages.size(), 1U);
  EXPECT_TRUE(sent_.empty());
}

TEST_F(SaveBitmap, PrefersTheSelectedPicture) {
  const auto picture = [](int width) {
    return PictureAt({0, 0}, Picture(width, 1, std::vector<Colour>(std::size_t(width), kWhite)));
  };
  DrawingObject wide = picture(17);
  DrawingObject group = GroupOf({picture(9)});
  person_.inputs = {{"1"}, {"1"}, {"1"}};
  SaveBMPinEEProm({group, wide}, {}, person_, eeprom_);
  wide.selected = true;
  SaveBMPinEEProm({group, wide}, {}, person_, eeprom_);
  wide.selected = false;
  group.selected = true;
  SaveBMPinEEProm({wide, group}, {}, person_, eeprom_);
  EXPECT_EQ(sent_, (std::vector<std::string>{"\033EWB1,2,1,0000;", "\033EWB1,3,1,000000;",
                                             "\033EWB1,2,1,0000;"}));
}

}  // namespace
}  // namespace kelvo
