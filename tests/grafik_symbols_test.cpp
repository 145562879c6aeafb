#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <set>

#include "graphics/painter.h"
#include "graphics/symbol_panel.h"
#include "graphics/symbols.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

PixelMap PixelsOf(const DrawingObject& symbol, int size) {
  PixelMap pixels(size, size);
  PaintDrawing(pixels, {symbol}, TestFonts(), 0);
  return pixels;
}

// Read from right to left where `x`, from bottom to top where `y`, within what the symbol covers.
bool IsMirrored(const PixelMap& pixels, const Box& box, bool x, bool y) {
  const int base = pixels.Height() - 1;
  for (int row = box.bottom; row <= box.top; ++row) {
    for (int column = box.left; column <= box.right; ++column) {
      const int other = x ? box.left + box.right - column : column;
      const int across = y ? box.bottom + box.top - row : row;
      if (pixels.At(column, base - row) != pixels.At(other, base - across)) return false;
    }
  }
  return true;
}

TEST(Symbols, AreEvenAndComeBackFromTheirCommands) {
  const std::set<std::string> evenAcross = {"Pfeil auf", "Pfeil ab", "Warnung", "Ventil",
                                            "Motor",     "Behälter", "Lampe"};
  const std::set<std::string> evenUpward = {"Pfeil rechts", "Pfeil links", "Pumpe", "Lampe"};
  for (const DeliveredSymbol& delivered : DeliveredSymbols()) {
    for (const int size : kSymbolSizes) {
      SCOPED_TRACE(delivered.name + std::to_string(size));
      const Drawing drawing = delivered.draw(size);
      const DrawingObject symbol = AsSymbol(drawing);
      const Box box = BoundsOf(symbol);
      EXPECT_EQ(std::max(box.right, box.top), size - 2);
      const PixelMap pixels = PixelsOf(symbol, size);
      if (evenAcross.count(delivered.name) > 0) {
        EXPECT_TRUE(IsMirrored(pixels, box, true, false));
      }
      if (evenUpward.count(delivered.name) > 0) {
        EXPECT_TRUE(IsMirrored(pixels, box, false, true));
      }
      const auto back = SymbolOf(SymbolCommands(drawing, 0).text, TestFonts());
      ASSERT_TRUE(back);
      EXPECT_EQ(PixelsOf(*back, size), pixels);
    }
  }
}

class GrafikSymbols : public Grafik {
 protected:
  QListWidget* List() const { return Find<QListWidget>("lstSymbole"); }
  std::vector<std::string> Own() const {
    std::vector<std::string> names;
    for (const auto& [name, commands] : host.symbols) names.push_back(name);
    return names;
  }
  void Remember(const char* name) {
    person.inputs = {name};
    Do("mnuGrafikSymbolMerken");
  }
};

TEST_F(GrafikSymbols, AreInsertedByKeysAndByDropsAsOneStep) {
  Do("mnuGrafikRaster");
  QTest::keyClick(List(), Qt::Key_Return);
  ASSERT_EQ(Objects().size(), 1U);
  const Box box = BoundsOf(Objects()[0]);
  EXPECT_EQ(box.Width(), 15);
  EXPECT_EQ(std::pair(box.left % 8, box.bottom % 8), std::pair(0, 0));
  EXPECT_TRUE(Canvas()->hasFocus());
  Do("mnuGrafikRueckgaengig");
  EXPECT_TRUE(Objects().empty());
  Do("mnuGrafikRaster");
  // With the keyboard's cross in a corner all of it comes onto the display all the same.
  Do("toolLinie");
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down}) {
    for (int step = 0; step < 240; ++step) QTest::keyClick(Canvas(), key);
  }
  Do("toolAuswahl");
  QTest::keyClick(List(), Qt::Key_Return);
  ASSERT_EQ(Objects().size(), 1U);
  const Box corner = BoundsOf(Objects()[0]);
  EXPECT_LE(corner.right, 239);
  EXPECT_GE(corner.bottom, 0);
  Do("mnuGrafikRueckgaengig");
  // Dropped on the canvas, and beside it.
  QMimeData held;
  held.setData(SymbolList::MimeType(),
               QByteArray::fromStdString(SymbolCommands(DeliveredSymbols()[5].draw(24), 0).text));
  const auto drop = [&](QPoint at) {
    QDragEnterEvent enter(at, Qt::CopyAction, &held, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(at, Qt::CopyAction, &held, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &event);
  };
  drop(Canvas()->mapTo(window.get(), Canvas()->ToWidget({100, 60})));
  drop({1, window->height() / 2});
  ASSERT_EQ(Objects().size(), 1U);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{89, 49, 111, 71}));
  held.setData(SymbolList::MimeType(), "\x1bG");
  drop(Canvas()->mapTo(window.get(), Canvas()->ToWidget({100, 60})));
  EXPECT_EQ(Objects().size(), 1U);
}

TEST_F(GrafikSymbols, TheOperatorsOwnAreRememberedRenamedAndDeleted) {
  DrawBoxes();
  Do("mnuGrafikAlles");
  Remember("Drei");
  Click({220, 100});
  Click({10, 12});
  person.answers = {false};
  Remember("Drei");
  EXPECT_EQ(person.questions.size(), 1U);
  Remember("  Eins ");
  EXPECT_EQ(Own(), (std::vector<std::string>{"Drei", "Eins"}));
  EXPECT_EQ(List()->currentItem()->text(), "Eins");
  EXPECT_EQ(host.queries, 0) << "the Terminal is not asked";
  // They come back as they were, as one.
  List()->setCurrentRow(0);
  QTest::keyClick(List(), Qt::Key_Return);
  ASSERT_EQ(Objects().size(), 4U);
  EXPECT_EQ(Objects()[3].members.size(), 3U);
  EXPECT_EQ(BoundsOf(Objects()[3]).Width(), 130);
  List()->setCurrentRow(0);
  person.inputs = {"Eins"};
  person.answers = {true};
  QTest::keyClick(List(), Qt::Key_F2);
  EXPECT_EQ(Own(), (std::vector<std::string>{"Eins"}));
  person.answers = {true};
  QTest::keyClick(List(), Qt::Key_Delete);
  EXPECT_TRUE(Own().empty());
  EXPECT_EQ(Objects().size(), 4U) << "the window's Entf is another one";
  // Those that are delivered stay.
  QTest::keyClick(List(), Qt::Key_Delete);
  EXPECT_EQ(static_cast<std::size_t>(List()->count()), DeliveredSymbols().size());
}

}  // namespace
}  // namespace kelvo
