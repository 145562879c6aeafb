#pragma once

#include <QObject>
#include <QPointer>
#include <string>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"
#include "store/patience.h"

class QLabel;
class QWidget;

namespace kelvo {

/// Waits for another program that holds the database. The windows repaint, keys and the mouse are
/// served afterwards, Esc gives up, and so does the closing of a window, which follows when the
/// handlers are over. A wait that can be noticed is said in the window in front.
class DatabaseWait : public QObject, public Patience {
 public:
  /// `window` is the one to tell it in when none is in front.
  DatabaseWait(EventLoop& loop, Operator& person, QWidget& window)
      : loop_(loop), person_(person), window_(window) {}

  /// The program ends, unless the operator says otherwise: from now on all waits together last half
  /// a second.
  void SetEnding(bool ending);

  void Begin(Access access, const std::string& holder) override;
  bool Wait() override;
  void End() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void ShowNote();
  bool GivesUp(QObject* receiver, QEvent& event);

  EventLoop& loop_;
  Operator& person_;
  QWidget& window_;
  bool ending_ = false;
  std::chrono::nanoseconds left_{0};  // for all waits of an ending program
  std::chrono::nanoseconds begin_{0};
  std::chrono::nanoseconds longest_{0};
  bool givenUp_ = false;
  QString words_;
  QPointer<QLabel> note_;
  std::vector<QPointer<QObject>> closed_;  // windows, told to close meanwhile
};

}  // namespace kelvo
