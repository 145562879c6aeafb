#pragma once

#include <QWidget>

#include "settings/macro_check.h"

class QHBoxLayout;
class QLabel;
class QSplitter;

namespace kelvo {

class MacroEdit;
class RemarkList;

/// The editor of a macro text with what helps to write it: below it the parameters of the command
/// that the caret stands in, and the remarks on the text, anew with each character.
class MacroDesk : public QWidget {
  Q_OBJECT

 public:
  explicit MacroDesk(QWidget* parent = nullptr);

  MacroEdit& Editor() { return *txtMakro; }
  QSplitter& Divider() { return *divider_; }
  /// Puts a short text to the right of the line about the parameters.
  void AddBesideHint(QWidget* widget);
  /// What the text is checked against from now on.
  void SetContext(MacroContext context);
  const MacroContext& Context() const { return context_; }
  /// The text, or what others hold, has changed.
  void Check();

 Q_SIGNALS:
  /// The text has been checked anew.
  void Checked(const std::string& wire);

 private:
  void ShowHint();
  void Jump(bool backwards);

  MacroContext context_;
  MacroEdit* txtMakro;
  QLabel* lblMakroParameter;
  RemarkList* lstMakroHinweise;
  QSplitter* divider_;
  QHBoxLayout* hintRow_;
};

}  // namespace kelvo
