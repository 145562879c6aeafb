#include "shell/splash.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <utility>

namespace kelvo {
namespace {

const QString loading = QStringLiteral("Programm wird geladen");

QPixmap TitlePicture() {
  const QFontMetrics metrics(QApplication::font());
  const qreal ratio = qApp->devicePixelRatio();
  const QSize size(metrics.averageCharWidth() * 50, metrics.lineSpacing() * 8);
  QPixmap picture(size * ratio);
  picture.setDevicePixelRatio(ratio);
  const QPalette palette = QApplication::palette();
  picture.fill(palette.color(QPalette::Window));
  QPainter painter(&picture);
  const QRect frame(QPoint(0, 0), size);
  painter.setPen(palette.color(QPalette::WindowText));
  painter.drawRect(frame.adjusted(0, 0, -1, -1));
  QFont title = QApplication::font();
  title.setPointSizeF(title.pointSizeF() * 2);
  painter.setFont(title);
  painter.drawText(frame.adjusted(0, 0, 0, -metrics.lineSpacing() * 3), Qt::AlignCenter,
                   QApplication::applicationDisplayName());
  painter.setFont(QApplication::font());
  painter.drawText(frame.adjusted(0, metrics.lineSpacing() * 4, 0, 0), Qt::AlignCenter, loading);
  return picture;
}

}  // namespace

Splash::Splash() : QSplashScreen(TitlePicture()) {
  setObjectName(QStringLiteral("frmSplash"));
  setWindowTitle(loading);
}

void Splash::paintEvent(QPaintEvent* event) {
  QSplashScreen::paintEvent(event);
  if (!std::exchange(active_, true)) QTimer::singleShot(0, this, &Splash::Active);
}

}  // namespace kelvo
