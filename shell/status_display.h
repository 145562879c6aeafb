#pragma once

#include <QElapsedTimer>
#include <QStatusBar>
#include <QTimer>

#include "base/undertakings.h"
#include "link/chronicle.h"
#include "link/exchange.h"

class QLabel;
class QProgressBar;
class QToolButton;

namespace kelvo {

/// The status bar of the main window: what is being exchanged; work longer than a second shows its
/// progress, and a line that is held by its handshake says so.
class StatusDisplay : public QStatusBar {
  Q_OBJECT

 public:
  StatusDisplay(Exchange& exchange, const Undertakings& begun, QWidget* parent = nullptr);

  /// What has come of it; stays until something else is begun. Of what one deed of the operator's
  /// brings the weightiest stays.
  void ShowResult(const QString& text, Chronicle::Weight weight);
  /// What is shown is over, however weighty: the next result stands in its place.
  void Forget() { deed_ = 0; }
  /// Something was handed to the line: says so while the line does not take it.
  void WatchLine();
  /// A drawing was handed to the line: shows how far it has got, and can be stopped.
  void WatchDrawing();

 Q_SIGNALS:
  /// What has not left the line is not to be sent any more.
  void StopWanted();
  /// The line is held, or is not any more.
  void HeldChanged();

 private:
  void ShowLine();
  void ShowDrawing(int left);
  void ShowActivity(std::string_view command);
  void ShowProgress();
  bool SameDeed() const;

  Exchange& exchange_;
  const Undertakings& begun_;
  QLabel* lblAktivitaet;
  QProgressBar* ctlSendeFortschritt;
  QToolButton* cmdSendenAbbrechen;
  QLabel* lblLeitung;
  QTimer progress_;
  QTimer line_;
  QElapsedTimer since_;
  QString activity_;
  QString result_;
  Chronicle::Weight weight_ = Chronicle::Weight::Sent;
  int deed_ = 0;  // that the result is of
  int total_ = 0;
  bool drawing_ = false;  // of the operator's, without an exchange
};

}  // namespace kelvo
