#pragma once

#include <QTextBrowser>
#include <QTextCursor>
#include <QTimer>
#include <QUrl>
#include <functional>

namespace kelvo {

class HelpFile;

/// Shows the manual's pages. A picture that is wider than the view is shown smaller.
class HelpBrowser : public QTextBrowser {
  Q_OBJECT

 public:
  explicit HelpBrowser(const HelpFile& file, QWidget* parent = nullptr);

  /// Marks the row about this message in the page shown. It stays in view, whatever size the window
  /// takes, until the person scrolls or goes to another page.
  void ShowMessage(const QString& message);
  /// The same for the row of a table that holds this anchor.
  void ShowPlace(const QString& anchor);

  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QVariant Fitted(const QByteArray& bytes);
  int Room() const;
  void Mark(std::function<QTextCursor()> findRow);
  void MarkRow();

  const HelpFile& file_;
  std::function<QTextCursor()> findRow_;
  QUrl markedPage_;
  QTimer refit_;
  int fittedTo_ = 0;  // the width that a picture had to be made smaller for; 0: none had to
};

}  // namespace kelvo
