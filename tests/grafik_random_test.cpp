// The editor under a hand that knows nothing: any key, any button, any command at any moment. For
// longer than a moment: --gtest_filter=GrafikAtRandom.* --gtest_repeat=-1 --gtest_shuffle

#include <QDialog>
#include <QWheelEvent>
#include <array>
#include <fstream>
#include <random>

#include "graphics/wmf.h"
#include "tests/drawing_samples.h"
#include "tests/grafik_desk.h"

namespace kelvo {
namespace {

constexpr int kSteps = 1500;

class GrafikAtRandom : public Grafik {
 protected:
  GrafikAtRandom()
      : random_(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed())) {
    const std::string path = folder.filePath("random.wmf").toStdString();
    RandomDrawings drawings(static_cast<unsigned>(Number(1, 1000000)));
    std::ofstream(path, std::ios::binary) << WriteWmf(drawings.Next(), 240, 128).bytes;
    person.file = path;  // of every file dialog
    actions_ = window->findChildren<QAction*>();
    // Whatever asks and waits is answered, one way or the other.
    QObject::connect(&answering_, &QTimer::timeout, [this] { AnswerWhatIsOpen(); });
    answering_.start(0);
  }

  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  template <typename Values>
  auto AnyOf(const Values& values) {
    return *std::next(std::begin(values), Number(0, static_cast<int>(std::size(values)) - 1));
  }
  Qt::KeyboardModifiers AnyModifiers() {
    constexpr Qt::KeyboardModifier kModifiers[] = {Qt::NoModifier,      Qt::NoModifier,
                                                   Qt::NoModifier,      Qt::ShiftModifier,
                                                   Qt::ControlModifier, Qt::AltModifier};
    return AnyOf(kModifiers);
  }

  void AnswerWhatIsOpen() {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog != nullptr) Number(0, 1) == 0 ? dialog->reject() : dialog->accept();
  }

  void Mouse() {
    const QPoint at = Canvas()->ToWidget({Number(-6, 245), Number(-6, 133)});
    const Qt::MouseButton button =
        AnyOf(std::array{Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton});
    const Qt::KeyboardModifiers keys = AnyModifiers();
    const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
      QMouseEvent event(type, at, Canvas()->mapToGlobal(QPointF(at)), button, held, keys);
      QApplication::sendEvent(Canvas(), &event);
    };
    switch (Number(0, 5)) {
      case 0:
        return send(QEvent::MouseButtonPress, button);
      case 1:
        return send(QEvent::MouseButtonRelease, Qt::NoButton);
      case 2:
        return send(QEvent::MouseButtonDblClick, button);
      case 3:
        return Turn(at, keys);
      default:
        return send(QEvent::MouseMove, Number(0, 1) == 0 ? button : Qt::NoButton);
    }
  }
  void Turn(QPoint at, Qt::KeyboardModifiers keys) {
    QWheelEvent event(at, Canvas()->mapToGlobal(QPointF(at)), {}, {0, Number(-1, 1) * 120},
                      Qt::NoButton, keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Canvas(), &event);
  }

  void Key() {
    constexpr Qt::Key kKeys[] = {Qt::Key_Left,   Qt::Key_Right,     Qt::Key_Up,     Qt::Key_Down,
                                 Qt::Key_Escape, Qt::Key_Backspace, Qt::Key_Home,   Qt::Key_Space,
                                 Qt::Key_Return, Qt::Key_Tab,       Qt::Key_Delete, Qt::Key_End,
                                 Qt::Key_A,      Qt::Key_Z,         Qt::Key_V,      Qt::Key_F2,
                                 Qt::Key_Insert, Qt::Key_Return,    Qt::Key_Right,  Qt::Key_Up};
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr && Number(0, 9) == 0 ? focus : Canvas(), AnyOf(kKeys),
                    AnyModifiers());
  }

  void Step() {
    const int what = Number(0, 9);
    if (what < 5) return Mouse();
    if (what < 7) return Key();
    if (what < 9) return AnyOf(actions_)->trigger();
    if (auto* button = AnyOf(window->findChildren<QAbstractButton*>())) button->click();
  }

  std::minstd_rand random_;
  QList<QAction*> actions_;
  QTimer answering_;
};

TEST_F(GrafikAtRandom, NothingBreaksAndAllCanBeUndone) {
  for (int step = 0; step < kSteps; ++step) {
    Step();
    if (step % 10 == 0) QApplication::processEvents();
    if (!window->isVisible()) window->show();
    person.inputs.assign(1,
                         Number(0, 1) == 0 ? std::optional<std::string>("Text 1") : std::nullopt);
    person.answers.assign(1, Number(0, 1) == 0);
    person.decisions.assign(1,
                            AnyOf(std::array{Decision::Save, Decision::Discard, Decision::Cancel}));
  }
  Do("toolAuswahl");
  const std::string last = window->CreatePic();
  int undone = 0;
  for (; Find<QAction>("mnuGrafikRueckgaengig")->isEnabled() && undone < 1000; ++undone) {
    Do("mnuGrafikRueckgaengig");
  }
  EXPECT_LT(undone, 1000);
  for (int i = 0; i < undone; ++i) Do("mnuGrafikWiederholen");
  EXPECT_EQ(window->CreatePic(), last);
}

}  // namespace
}  // namespace kelvo
