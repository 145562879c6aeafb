#include <QDialog>
#include <QMenu>
#include <QTimer>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

using testing_world::milliseconds;

// What goes over the line while the operator only looks.
class QuietLineTest : public WindowTest {
 protected:
  QuietLineTest() {
    Sql("update Optionen set FirstRun = 0");
    terminal.Answer("\x1b?V", "2.10;");
  }
  std::string Sent(const std::function<void()>& act) {
    Forget();
    act();
    QApplication::processEvents();
    loop.WaitForEvent(milliseconds(5000));
    return Written();
  }
  std::vector<QWidget*> OtherWindows() {
    std::vector<QWidget*> others;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top != window.get() && top->isVisible()) others.push_back(top);
    }
    return others;
  }
};

TEST_F(QuietLineTest, OnlyThePagesTextAndStatusAskAndTheStatusOnlyOnce) {
  Start();
  EXPECT_EQ(Sent([this] { loop.WaitForEvent(std::chrono::hours(9)); }), "");
  const std::string text = "←?C←?c←G?P←T?F←T?A←T?M←T?Z";
  for (const char* status : {"←?V", ""}) {
    for (int tab = 0; tab < kTabCount; ++tab) {
      const bool asks = tab == static_cast<int>(Tab::Text);
      const std::string once = tab == static_cast<int>(Tab::Status) ? status : "";
      EXPECT_EQ(Sent([&] { Show(static_cast<Tab>(tab)); }), asks ? text : once) << tab;
    }
  }
}

TEST_F(QuietLineTest, NoWindowThatIsOpenedOrClosedSendsAnything) {
  StartOn(Tab::Macros);
  // A dialog that waits for its answer is cancelled.
  QTimer dismiss;
  QObject::connect(&dismiss, &QTimer::timeout, &dismiss, [] {
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
  });
  dismiss.start(0);
  int opened = 0;
  for (const char* menu : {"mnuAnsicht", "mnuHilfe"}) {
    for (QAction* action : Find<QMenu>(menu).actions()) {
      if (action->objectName().startsWith(QStringLiteral("mnuAnsichtSeite"))) continue;
      const std::string name = action->objectName().toStdString();
      EXPECT_EQ(Sent([&] { action->trigger(); }), "") << name;
      for (QWidget* other : OtherWindows()) {
        ++opened;
        EXPECT_EQ(Sent([other] { other->close(); }), "") << name;
      }
    }
  }
  EXPECT_GE(opened, 3) << "the editor, the traffic and the history";
  EXPECT_EQ(Sent([this] { Trigger("mnuOptionenAnschluesse"); }), "");
}

}  // namespace
}  // namespace kelvo
