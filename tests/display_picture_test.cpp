#include <gtest/gtest.h>

#include <QCheckBox>
#include <QRadioButton>

#include "widgets/contrast.h"
#include "widgets/display_picture.h"
#include "widgets/indicator_style.h"

namespace kelvo {
namespace {

// A display whose outermost pixels are set.
PixelMap Frame() {
  PixelMap pixels(240, 128);
  for (const int y : {0, 127}) pixels.PutRow(0, 239, y, Ink::Set);
  for (int y = 0; y < 128; ++y) {
    for (const int x : {0, 239}) pixels.Put(x, y, Ink::Set);
  }
  return pixels;
}

// The best that any of its points is told from the ground.
double BestContrast(QAbstractButton& button, QStyle& style, const QColor& ground) {
  button.setStyle(&style);
  button.setPalette(QPalette(ground));
  button.resize(button.sizeHint());
  const QImage seen = button.grab().toImage();
  double best = 1;
  for (int y = 0; y < seen.height(); ++y) {
    for (int x = 0; x < seen.width(); ++x) {
      best = std::max(best, Contrast(seen.pixelColor(x, y), ground));
    }
  }
  return best;
}

TEST(IndicatorStyle, EmptyBoxesAreSeenOnADarkGround) {
  IndicatorStyle style(QStringLiteral("fusion"));
  for (const bool enabled : {true, false}) {
    QCheckBox box;
    QRadioButton radio;
    for (QAbstractButton* const button : std::initializer_list<QAbstractButton*>{&box, &radio}) {
      button->setEnabled(enabled);
      EXPECT_GE(BestContrast(*button, style, QColor(40, 40, 40)), enabled ? 3 : 2);
    }
  }
}

// They are beside the widget's frame, not under it.
TEST(DisplayPicture, IsWhollySeenInsideItsFrame) {
  for (const auto tooLarge :
       {DisplayPicture::TooLarge::Claims, DisplayPicture::TooLarge::Shrinks}) {
    DisplayPicture picture(tooLarge);
    picture.Show(Frame());
    EXPECT_EQ(picture.heightForWidth(242), 130);
    EXPECT_EQ(picture.sizeHint(), QSize(242, 130));
    picture.resize(picture.sizeHint());
    const QImage seen = picture.grab().toImage();
    const QRgb dot = picture.Image().pixel(0, 0);
    for (const QPoint at : {QPoint(1, 1), QPoint(240, 1), QPoint(1, 128), QPoint(240, 128)}) {
      EXPECT_EQ(seen.pixel(at), dot) << at.x() << "," << at.y();
    }
    for (const QPoint at : {QPoint(0, 0), QPoint(241, 129), QPoint(100, 0), QPoint(0, 60)}) {
      EXPECT_NE(seen.pixel(at), dot) << at.x() << "," << at.y();
    }
  }
}

TEST(DisplayPicture, GrowsByWholePixelsAndGivesWayOnlyWhereItMay) {
  DisplayPicture claims(DisplayPicture::TooLarge::Claims);
  DisplayPicture shrinks(DisplayPicture::TooLarge::Shrinks);
  for (DisplayPicture* const picture : {&claims, &shrinks}) {
    picture->Show(Frame());
    EXPECT_EQ(picture->heightForWidth(2 * 240 + 2 + 239), 2 * 128 + 2);
    picture->SetRoomHeight(3 * 128 + 100);
    EXPECT_EQ(picture->sizeHint(), QSize(3 * 240 + 2, 3 * 128 + 2));
  }
  EXPECT_EQ(claims.heightForWidth(122), 130);
  EXPECT_EQ(claims.minimumSizeHint(), QSize(242, 130));
  EXPECT_EQ(shrinks.heightForWidth(122), 66);
}

}  // namespace
}  // namespace kelvo
