#pragma once

#include <QDialog>
#include <QPointer>
#include <string>
#include <vector>

#include "base/operator.h"

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace kelvo {

class TickList;

/// A dialog with a list of Terminals to tick, to each of which something is sent, and which shows
/// how far each is. What is sent, and in which steps, its heirs know.
class TerminalsDialog : public QDialog {
  Q_OBJECT

 public:
  /// The colours of what has come out well and of what has failed.
  static QColor GoodColour();
  static QColor FailedColour();

  void reject() override;
  void done(int result) override;

 Q_SIGNALS:
  /// A run is over: what came of it.
  void Finished(const QString& result, bool failed);

 protected:
  /// The names of the controls.
  struct Names {
    const char* dialog;
    const char* list;
    const char* moment;
    const char* result;
    const char* send;
    const char* all;
    const char* none;
    const char* stop;
    const char* end;
  };
  struct Words {
    QStringList titles;       ///< of the list's columns, the last one is the state
    std::vector<int> widths;  ///< of the columns in front of that, in characters
    QString send;             ///< on the button that begins
    QString sendTip;
    QString all;          ///< on the button that ticks all
    QString stopTip;      ///< of the button that ends a run
    QString stopping;     ///< while that takes effect
    std::string running;  ///< what runs, a German sentence
  };
  TerminalsDialog(const Names& names, Words words, Operator& person, QWidget* parent);

  /// Shows it; it blocks the window behind it.
  void Present();
  bool Running() const { return running_; }
  /// Says what came of a run, when, and which one it was since StartAnew(): the words of a repeated
  /// one may be the same.
  void ShowOutcome(const QString& text);
  void StartAnew() { runs_ = 0; }
  void ShowState(int row, bool ticked, const std::string& state, QColor colour);

  /// Sends to those that are ticked; ends early after StopRun().
  virtual void Run() = 0;
  virtual void StopRun() = 0;
  virtual void TickAll();

  QPushButton* StartButton() const { return start_; }
  QLabel* ResultLabel() const { return result_; }
  TickList* List() const { return list_; }

 private:
  void MakeLayout();
  void ConnectButtons();
  void SetRunning(bool running);
  void Start();
  void Stop();

  Words words_;
  Operator& person_;
  bool running_ = false;
  bool closing_ = false;
  int runs_ = 0;
  QPointer<QWidget> openedFrom_;  ///< the window that was active

  TickList* list_;
  QLabel* moment_;
  QLabel* result_;
  QPushButton* start_;
  QPushButton* all_;
  QPushButton* none_;
  QPushButton* stop_;
  QPushButton* end_;
};

}  // namespace kelvo
