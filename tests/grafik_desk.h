#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <map>
#include <string>

#include "graphics/frmGrafik.h"
#include "graphics/picture_dialog.h"
#include "tests/fakes/fake_operator.h"
#include "tests/fakes/virtual_time.h"
#include "tests/test_fonts.h"

namespace kelvo {

class HostModel : public GraphicsHost {
 public:
  bool Send() override {
    if (open) ++sends;
    return open;
  }
  bool Sending() const override { return sending; }
  void NewDrawing() override { ++news; }
  void SaveAsMakro() override { ++makros; }
  void SaveAsText() override { ++texts; }
  bool CanSend() const override { return open && !sending; }
  int BitsPerSecond() const override { return 9600; }
  TerminalTraits Terminal() const override {
    TerminalTraits traits;
    traits.blackThreshold = 0x800000;
    traits.pixelWidthVersion = 2;
    traits.queryVersion = [this] { return ++queries, 2.1; };
    return traits;
  }
  bool FensterMitZoomen() const override { return follow; }
  void SaveBMPinEEProm(BitmapTo) override { ++stores; }
  std::vector<StoredText> StoredTexts() const override { return stored; }

  std::vector<StoredSymbol> Symbols() const override {
    std::vector<StoredSymbol> all;
    for (const auto& [name, commands] : symbols) all.push_back({name, commands});
    return all;
  }
  void StoreSymbol(const std::string& name, const std::string& commands) override {
    symbols[name] = commands;
  }
  void RenameSymbol(const std::string& name, const std::string& changed) override {
    symbols[changed] = symbols[name];
    symbols.erase(name);
  }
  void DeleteSymbol(const std::string& name) override { symbols.erase(name); }
  std::string Remembered(const std::string& name) const override {
    const auto found = remembered.find(name);
    return found == remembered.end() ? std::string() : found->second;
  }
  void Remember(const std::string& name, const std::string& value) override {
    remembered[name] = value;
  }

  std::map<std::string, std::string> remembered;
  bool ChoosePrinter(QPrinter& printer) override {
    if (pdf.isEmpty()) return false;
    landscape = printer.pageLayout().orientation() == QPageLayout::Landscape;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    return true;
  }

  QString pdf;  // where the operator prints to; empty: the dialog is cancelled
  bool landscape = false;
  std::map<std::string, std::string> symbols;
  std::vector<StoredText> stored;
  int sends = 0;
  int news = 0;
  int stores = 0;
  int makros = 0;
  int texts = 0;
  bool open = true;
  bool sending = false;
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
    Press(from, keys);
    MoveTo({(from.x + to.x) / 2, (from.y + to.y) / 2}, keys);
    MoveTo(to, keys);
    Let(to, keys);
  }
  void Press(Point at, Qt::KeyboardModifiers keys = {}) const {
    QTest::mousePress(Canvas(), Qt::LeftButton, keys, Canvas()->ToWidget(at));
  }
  void Let(Point at, Qt::KeyboardModifiers keys = {}) const {
    QTest::mouseRelease(Canvas(), Qt::LeftButton, keys, Canvas()->ToWidget(at));
  }
  // QTest's own moves carry no pressed button.
  void MoveTo(Point p, Qt::KeyboardModifiers keys = {}) const {
    const QPointF at = Canvas()->ToWidget(p);
    QMouseEvent move(QEvent::MouseMove, at, Canvas()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                     keys);
    QApplication::sendEvent(Canvas(), &move);
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
};

class Grafik : public testing::Test, protected GrafikDesk {
 protected:
  // Presses a button of the picture dialog as soon as it is open.
  void AnswerPictureDialog(const char* button, std::function<void(PictureDialog&)> before = {}) {
    QTimer::singleShot(0, qApp, [=] {
      auto* dialog = qobject_cast<PictureDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      if (before) before(*dialog);
      dialog->findChild<QPushButton*>(QString::fromLatin1(button))->click();
    });
  }
  void DrawBoxes() {
    Do("toolRechteck");
    Drag({10, 10}, {29, 19});
    Drag({50, 40}, {59, 79});
    Drag({100, 20}, {139, 29});
    Do("toolAuswahl");
  }
};

}  // namespace kelvo
