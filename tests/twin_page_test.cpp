#include <QApplication>
#include <QLabel>
#include <QListWidget>

#include "tests/twin_world.h"
#include "twin_page/twin_panel.h"
#include "twin_page/twin_wall.h"

namespace kelvo::testing_world {
namespace {

const std::string Esc = "\x1B";

struct TwinPages : public ::testing::Test, protected TwinWorld {
  TwinPages() : TwinWorld({{.address = 5}}) {
    twins.SetListener([this] {
      panel.Changed();
      wall.Changed();
    });
  }
  /// The Terminal shows a frame, and that is known.
  void DrawFrame() {
    Say(Esc + "!A5;");
    AskInfo();
    Talk(Esc + "GC" + Esc + "GP5,5;" + Esc + "GR90,60;");
  }
  void Talk(const std::string& text) {
    Say(text);
    exchange.WaitUntilSent();
  }
  std::string Words(const char* name) {
    return panel.findChild<QLabel*>(QString::fromLatin1(name))->text().toStdString();
  }
  /// Lets the pause between two looks pass.
  template <typename Done>
  void Until(Done done) {
    while (!done()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  std::optional<int> absent;
  TwinNames names = [](int address) { return address == 5 ? "Pumpe" : ""; };
  TwinPanel panel{twins, names, [this] { return absent; }};
  TwinWall wall{twins, names, [] { return std::vector{5, 9}; }, nullptr};
};

TEST_F(TwinPages, PanelSaysWhatThePictureRestsOn) {
  panel.show();
  EXPECT_EQ(Words("lblAnzeigeWer"), "Nachbildung: das Terminal, das gerade hört");
  EXPECT_EQ(Words("lblAnzeigeStand").substr(0, 50),
            "Unbekannt, weil das Terminal noch nicht geantworte");
  DrawFrame();
  Until([&] { return Words("lblAnzeigeStand").starts_with("Errechnet"); });
  EXPECT_EQ(Words("lblAnzeigeWer"), "Nachbildung: Pumpe, Adresse 5");
  const QImage shown = panel.Picture().Image();
  const PixelMap& pixels = Real(5)->Display().Pixels();
  for (int y = 0; y < pixels.Height(); ++y) {
    for (int x = 0; x < pixels.Width(); ++x) {
      ASSERT_EQ(pixels.At(x, y), shown.pixel(x, y) == shown.pixel(5, 5)) << x << "," << y;
    }
  }
  Talk(Esc + "ECM4;");
  Until([&] { return Words("lblAnzeigeStand").starts_with("Unbekannt, weil Makro 4"); });
  EXPECT_NE(panel.Picture().Image().pixel(5, 5), shown.pixel(5, 5)) << "dull";
  Talk(Esc + "!A6;");
  Until([&] { return Words("lblAnzeigeWer") == "Nachbildung: Adresse 6"; });
  EXPECT_EQ(Words("lblAnzeigeStand"),
            "Unbekannt, weil mit diesem Terminal noch nicht gesprochen wurde.");
  absent = 6;
  panel.Changed();
  Until([&] { return Words("lblAnzeigeWer") == "Nachbildung: keines gewählt"; });
  EXPECT_EQ(Words("lblAnzeigeStand"), "Unbekannt, weil unter Adresse 6 niemand geantwortet hat.");
  absent = 254;
  Talk(Esc + "!A5;" + Esc + "!A254;");
  Until([&] { return Words("lblAnzeigeWer").ends_with("Adresse 5 (zuletzt gewählt)"); });
}

TEST_F(TwinPages, WallShowsTheStoredAndTheSpokenWith) {
  wall.show();
  DrawFrame();
  auto& list = *wall.findChild<QListWidget*>(QStringLiteral("ctlAnzeigen"));
  const auto text = [&](int row) { return list.item(row)->text().toStdString(); };
  Until([&] { return text(0) == "Pumpe, Adresse 5\nerrechnet"; });
  EXPECT_EQ(text(1), "Adresse 9\nnoch nicht angesprochen");
  EXPECT_TRUE(list.item(0)->flags() & Qt::ItemIsEnabled);
  EXPECT_FALSE(list.item(1)->flags() & Qt::ItemIsEnabled);
  int chosen = -1;
  QObject::connect(&wall, &TwinWall::AddressChosen, &wall, [&](int address) { chosen = address; });
  Q_EMIT list.itemActivated(list.item(0));
  EXPECT_EQ(chosen, 5);
  Talk(Esc + "!A7;" + Esc + "GC");
  Until([&] { return list.count() == 3; });
  EXPECT_EQ(text(1), "Adresse 7\nunbekannt");
  Talk(Esc + "!A5;" + Esc + "R" + Esc + "GC");  // macro 0 may have set another size
  Until([&] { return text(0) == "Pumpe, Adresse 5\nunbekannt, Größe angenommen"; });
}

}  // namespace
}  // namespace kelvo::testing_world
