#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>

class QLabel;
class QProgressBar;
class QPushButton;

namespace kelvo {

/// The progress window `frmInfo`: there while the EEPROM is erased or the configuration is saved.
/// It never takes the way out from the operator: it blocks nothing and may be closed.
class InfoWindow : public QWidget {
  Q_OBJECT

 public:
  explicit InfoWindow(QWidget* parent);

  /// Shows the window with a caption and what is being waited for. With `stop` it has a button for
  /// who does not want to wait any longer.
  void Begin(const QString& caption, const QString& info, std::function<void()> stop = {});
  void SetCaption(const QString& caption) { setWindowTitle(caption); }
  /// Shows the progress bar moving, as long as there is no figure to show.
  void ShowBusy();
  /// Shows the progress bar, from 0 to `maximum` steps.
  void ShowProgress(int maximum);
  void SetProgress(int value);
  void HideProgress();
  void End();

 private:
  void ShowElapsed();

  QLabel* lblInfo;
  QLabel* lblVergangen;
  QProgressBar* ctlFortschritt;
  QPushButton* cmdInfoNichtWarten;
  std::function<void()> stop_;
  QTimer second_;
  QElapsedTimer elapsed_;
};

/// Ends the window's work when a handler leaves, whatever way it goes.
class InfoWindowUse {
 public:
  InfoWindowUse(InfoWindow& window, const QString& caption, const QString& info,
                std::function<void()> stop = {})
      : window_(window) {
    window_.Begin(caption, info, std::move(stop));
  }
  ~InfoWindowUse() { window_.End(); }
  InfoWindowUse(const InfoWindowUse&) = delete;
  InfoWindowUse& operator=(const InfoWindowUse&) = delete;

 private:
  InfoWindow& window_;
};

}  // namespace kelvo
