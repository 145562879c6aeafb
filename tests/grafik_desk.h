#pragma once

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <string>

#include "graphics/frmGrafik.h"
#include "tests/fakes/fake_operator.h"
#include "tests/fakes/virtual_time.h"
#include "tests/test_fonts.h"

namespace kelvo {

class HostModel : public GraphicsHost {
 public:
  void Send() override { ++sends; }
  void NewDrawing() override { ++news; }
  void SaveAsMakro() override { ++makros; }
  void SaveAsText() override { ++texts; }
  bool CanSend() const override { return open; }
  int BitsPerSecond() const override { return 9600; }
  TerminalTraits Terminal() const override {
    TerminalTraits traits;
    traits.blackThreshold = 0x800000;
    traits.pixelWidthVersion = 2;
    traits.queryVersion = [this] { return ++queries, 2.1; };
    return traits;
  }
  bool FensterMitZoomen() const override { return follow; }
  void SaveBMPinEEProm() override { ++stores; }

  int sends = 0;
  int news = 0;
  int stores = 0;
  int makros = 0;
  int texts = 0;
  bool open = true;
  bool follow = false;
  mutable int queries = 0;
};

/// The real window on an offscreen display, and hands on mouse and keys.
class GrafikDesk {
 public:
  explicit GrafikDesk(QSize display = {240, 128}) { Start(display); }

  /// Begins anew, as after a start of the program.
  void Start(QSize display = {240, 128}) {
    window = std::make_unique<frmGrafik>(host, person, TestFonts(), timer, display, DraftPath());
    window->resize(1200, 760);
    window->show();
    Q_UNUSED(QTest::qWaitForWindowExposed(window.get()));
  }

  std::string DraftPath() const { return folder.filePath("entwurf.wmf").toStdString(); }
  template <typename Control>
  Control* Find(const char* name) const {
    return window->findChild<Control*>(QString::fromLatin1(name));
  }
  DrawingCanvas* Canvas() const { return Find<DrawingCanvas>("Display"); }
  void Do(const char* action) const { Find<QAction>(action)->trigger(); }
  const Drawing& Objects() const { return window->CurrentDrawing(); }

  void Drag(Point from, Point to, Qt::KeyboardModifiers keys = {}) const {
    DrawingCanvas* const canvas = Canvas();
    QTest::mousePress(canvas, Qt::LeftButton, keys, canvas->ToWidget(from));
    MoveTo({(from.x + to.x) / 2, (from.y + to.y) / 2}, keys);
    MoveTo(to, keys);
    QTest::mouseRelease(canvas, Qt::LeftButton, keys, canvas->ToWidget(to));
  }
  void Click(Point at, Qt::KeyboardModifiers keys = {}) const {
    QTest::mouseClick(Canvas(), Qt::LeftButton, keys, Canvas()->ToWidget(at));
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers keys = {}) const {
    QTest::keyClick(Canvas(), key, keys);
  }

  QTemporaryDir folder;
  testing_world::FakeOperator person;
  HostModel host;
  testing_world::VirtualLoop loop;
  testing_world::VirtualTimer timer{loop, testing_world::milliseconds(500), false};
  std::unique_ptr<frmGrafik> window;

 private:
  // QTest's own moves carry no pressed button.
  void MoveTo(Point p, Qt::KeyboardModifiers keys) const {
    const QPointF at = Canvas()->ToWidget(p);
    QMouseEvent move(QEvent::MouseMove, at, Canvas()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                     keys);
    QApplication::sendEvent(Canvas(), &move);
  }
};

}  // namespace kelvo
