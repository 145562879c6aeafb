#pragma once

#include <QWidget>

#include "shell/tabs.h"

class QLabel;

namespace kelvo {

/// What a link to a page begins with; the page's number follows.
inline const QString kTabLink = QStringLiteral("Tab");

/// The welcome and help page: what an operator does first.
class WelcomePage : public QWidget {
  Q_OBJECT

 public:
  explicit WelcomePage(QWidget* parent = nullptr);

 Q_SIGNALS:
  /// A link was followed: kTabLink and a page's number, or the name of the menu entry or button to
  /// press.
  void LinkFollowed(const QString& link);

 private:
  QLabel* Linked(const char* name, const QString& text);
};

}  // namespace kelvo
