#pragma once

#include <QObject>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/operator.h"
#include "help/frmHilfe.h"

namespace kelvo {

/// Opens the help window where it is asked for, and wherever the operator presses F1. The window
/// and the engine behind it come with the first use.
class HelpDesk : public QObject {
  Q_OBJECT

 public:
  HelpDesk(Operator& person, std::string programFolder, std::function<QString()> shownChapter);

  /// Names the help file; before that it is the built-in name, "kelvo.hlp". A name without a path
  /// is looked for in the program's folder when the window is opened.
  void SetFile(std::string name) { file_ = std::move(name); }

  // A file that is missing or damaged is said in a message, and no window comes.
  void ShowContents();
  void ShowIndex();
  /// The chapter of the page that the main window shows.
  void ShowPage();
  /// A place of the manual, "eeprom.html#loeschen"; with the row of a message, if one is given.
  void ShowChapter(const QString& chapter, const QString& message = {});
  void Close();
  /// The help window; nullptr when it has not been asked for yet.
  const QWidget* Made() const { return window_.get(); }

 Q_SIGNALS:
  /// The window is there and has not been shown yet.
  void WindowMade(QWidget& window);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  frmHilfe* Window();
  QString FileName(const std::string& path);
  void Present();

  Operator& person_;
  const std::string programFolder_;
  const std::function<QString()> shownChapter_;
  std::string file_;
  bool telling_ = false;
  std::optional<QTemporaryDir> link_;  // only where it is needed
  std::unique_ptr<frmHilfe> window_;
};

}  // namespace kelvo
