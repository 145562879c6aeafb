#include <QAbstractItemView>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <array>

#include "graphics/ruler.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

TEST(Rulers, NumbersKeepApart) {
  const struct {
    int zoom, room, step;
  } rows[] = {{1, 40, 50}, {2, 40, 20}, {3, 40, 20}, {4, 40, 10}, {40, 40, 1}, {136, 40, 1}};
  for (const auto& row : rows) EXPECT_EQ(RulerStep(row.zoom, row.room), row.step) << row.zoom;
}

class GrafikView : public Grafik {
 protected:
  void TurnOn(const char* choice) const {
    if (!Find<QAction>(choice)->isChecked()) Do(choice);
  }
  // Where a ruler shows the pointer, in positions of the canvas.
  std::pair<int, int> Marked(const char* name, Qt::Orientation along) const {
    auto* ruler = Find<Ruler>(name);
    const QImage image = ruler->grab().toImage();
    const QColor marked = ruler->palette().color(QPalette::Highlight);
    int first = -1;
    int last = -1;
    const bool across = along == Qt::Horizontal;
    for (int i = 0; i < (across ? image.width() : image.height()); ++i) {
      if (image.pixelColor(across ? QPoint(i, 0) : QPoint(0, i)) != marked) continue;
      first = first < 0 ? i : first;
      last = i;
    }
    const QPoint shift = Canvas()->mapFrom(window.get(), ruler->mapTo(window.get(), QPoint()));
    const int by = across ? shift.x() : shift.y();
    return {first + by, last + by};
  }
};

TEST_F(GrafikView, RulersFollowThePointerTheScrollingAndTheZoom) {
  TurnOn("mnuGrafikLineale");
  for (const int zoom : {2, 7, 20}) {
    Find<QSlider>("ctlZoom")->setValue(zoom);
    QApplication::processEvents();
    const Point at = Canvas()->ToDrawing(Canvas()->visibleRegion().boundingRect().center());
    QTest::mouseMove(Canvas(), Canvas()->ToWidget(at));
    QApplication::processEvents();
    const QRect pixel = Canvas()->RectOf({at.x, at.y, at.x, at.y});
    EXPECT_EQ(Marked("linOben", Qt::Horizontal), std::pair(pixel.left(), pixel.right())) << zoom;
    EXPECT_EQ(Marked("linLinks", Qt::Vertical), std::pair(pixel.top(), pixel.bottom())) << zoom;
  }
  Do("mnuGrafikLineale");
  EXPECT_FALSE(Find<Ruler>("linOben")->isVisible());
}

TEST_F(GrafikView, SnappingIsRememberedAndShowsItsLines) {
  DrawBoxes();
  Find<QSlider>("ctlZoom")->setValue(3);
  Drag({55, 40}, {56, 40});
  EXPECT_EQ(BoundsOf(Objects()[1]).left, 51);
  Do("mnuGrafikFang");
  Start();
  EXPECT_TRUE(Find<QAction>("mnuGrafikFang")->isChecked());
  DrawBoxes();
  Find<QSlider>("ctlZoom")->setValue(3);
  Do("mnuGrafikRueckgaengig");
  const QImage before = Canvas()->grab().toImage();
  Press({55, 40});
  MoveTo({56, 21});
  const QImage during = Canvas()->grab().toImage();
  const QPoint beside = Canvas()->ToWidget({200, 19});
  EXPECT_NE(during.pixelColor(beside), before.pixelColor(beside));
  Key(Qt::Key_Escape);
  EXPECT_EQ(Canvas()->grab().toImage().pixelColor(beside), before.pixelColor(beside));
  Let({56, 21});
  Drag({55, 40}, {56, 21});
  EXPECT_EQ(BoundsOf(Objects()[1]).bottom, 19);
}

TEST_F(GrafikView, AllNumbersCountLikeTheCommandsWhenWanted) {
  Do("toolRechteck");
  Drag({8, 111}, {23, 118});
  Do("toolAuswahl");
  const auto place = [&] {
    return std::array{Find<QSpinBox>("txtPosX")->value(), Find<QSpinBox>("txtPosY")->value(),
                      Find<QSpinBox>("txtBreite")->value(), Find<QSpinBox>("txtHoehe")->value()};
  };
  const std::string commands = window->CreatePic();
  const QString where = Find<QLabel>("lblKoordinaten")->text();
  EXPECT_EQ(place(), (std::array{8, 111, 16, 8}));
  Do("mnuGrafikZaehlung");
  EXPECT_EQ(place(), (std::array{8, 9, 16, 8}));
  EXPECT_EQ(where, "X 23  Y 118");
  EXPECT_EQ(Find<QLabel>("lblKoordinaten")->text(), "X 23  Y 9");
  EXPECT_EQ(window->CreatePic(), commands);
  // What is typed counts so, too: it grows downward from its upper edge.
  Find<QSpinBox>("txtHoehe")->setValue(10);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{8, 109, 23, 118}));
  Find<QSpinBox>("txtPosY")->setValue(0);
  EXPECT_EQ(BoundsOf(Objects()[0]), (Box{8, 118, 23, 127}));
  Start();
  EXPECT_EQ(Find<QLabel>("lblZaehlung")->text(), "Y nach unten");
  window->SetDisplaySize(128, 64);
  Do("toolLinie");
  Drag({0, 63}, {5, 63});
  EXPECT_EQ(place(), (std::array{0, 0, 6, 1}));
  TurnOn("mnuGrafikObjekte");
  QApplication::processEvents();
  EXPECT_EQ(Find<QAbstractItemView>("lstObjekte")->model()->index(0, 0).data(), "Linie 0,0 – 5,0");
}

}  // namespace
}  // namespace kelvo
