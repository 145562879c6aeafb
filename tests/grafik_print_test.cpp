#include <QPainter>

#include "graphics/print_drawing.h"
#include "tests/grafik_desk.h"
#include "widgets/files.h"

namespace kelvo {
namespace {

TEST(PrintDrawing, PixelsBecomeSharpSquaresInAFrame) {
  QImage pixels(3, 2, QImage::Format_RGB32);
  pixels.fill(Qt::white);
  pixels.setPixel(0, 0, 0);
  pixels.setPixel(2, 1, 0);
  QImage page(310, 500, QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  PaintPage(painter, page.rect(), 5, {pixels, QStringLiteral("halle.wmf")});
  painter.end();
  const auto black = [&](int x, int y) { return page.pixel(x, y) == 0xff000000; };
  // A hundred and two units a side: three fit between the frame's edges.
  EXPECT_TRUE(black(10, 10) && black(100, 101) && !black(110, 10) && !black(10, 110));
  EXPECT_TRUE(black(215, 110) && black(300, 200) && !black(200, 110));
  for (int y = 2; y < 200; ++y) {
    for (int x = 2; x < 300; ++x) {
      EXPECT_TRUE(page.pixel(x, y) == 0xff000000 || page.pixel(x, y) == 0xffffffff);
    }
  }
  const QImage below = page.copy(0, 215, 310, 60);
  QImage empty = below;
  empty.fill(Qt::white);
  EXPECT_NE(below, empty) << "name and size";
}

TEST_F(Grafik, PrintsOnOnePage) {
  DrawBoxes();
  Do("mnuGrafikDrucken");
  EXPECT_TRUE(person.messages.empty()) << "cancelled";
  host.pdf = folder.filePath(QStringLiteral("seite.pdf"));
  Do("mnuGrafikDrucken");
  EXPECT_TRUE(host.landscape);
  const std::string bytes = ReadFile(host.pdf.toStdString(), 1'000'000).value_or("");
  EXPECT_TRUE(bytes.starts_with("%PDF"));
  EXPECT_NE(bytes.find("/Count 1\n"), std::string::npos);
  EXPECT_TRUE(person.messages.empty());
  host.pdf = folder.filePath(QStringLiteral("fehlt/seite.pdf"));
  Do("mnuGrafikDrucken");
  EXPECT_EQ(person.LastMessage(), "Die Zeichnung konnte nicht gedruckt werden.");
}

}  // namespace
}  // namespace kelvo
