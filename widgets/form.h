#pragma once

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace kelvo {

/// A control's variable is its name, and its name is its objectName.
template <typename Control>
Control* Named(Control* control, const QString& name) {
  control->setObjectName(name);
  return control;
}
template <typename Control>
Control* Named(Control* control, const char* name) {
  return Named(control, QString::fromUtf8(name));
}

/// The objectName of a member of a control array.
inline QString ArrayName(const char* name, int index) {
  return QStringLiteral("%1_%2").arg(QString::fromUtf8(name)).arg(index);
}

/// A label with a mnemonic ("&Adresse:") that leads to its control, which a screen reader then
/// names after it.
QLabel* LabelFor(QWidget* control, const QString& text);
/// Adds a labelled row; `unit` (shown behind the control) may be empty. The unit's label, if any.
QLabel* AddRow(QFormLayout* form, const QString& label, QWidget* control, const QString& unit = {});
/// A push button that names itself.
QPushButton* MakeButton(const char* name, const QString& caption, const QString& tip = {});
/// The same for what cannot be taken back in a Terminal: it stands out by its sign.
QPushButton* MakeDangerButton(const char* name, const QString& caption, const QString& tip = {});
/// A key that presses the button, beside the mnemonic in its caption.
void AddShortcut(QPushButton* button, const QKeySequence& keys);
/// A label keeps the room of so many lines while it is hidden or has fewer.
void KeepRoom(QLabel* label, int lines);
/// A label has the room of just so many lines, whatever it says, and claims no width: nothing
/// beside or below it ever moves.
void FixRoom(QLabel* label, int lines);
/// A button as wide as each of these captions needs, whichever it bears.
void FitCaptions(QPushButton* button, std::initializer_list<QString> captions);
/// Escape closes a window that only shows something.
void CloseByEscape(QWidget* window);
/// A label that shows a value: selectable, named for a screen reader by its row's label.
QLabel* MakeValue(const char* name);
/// A group with a form inside whose labels line up.
QFormLayout* MakeForm(QGroupBox* group);
/// Buttons in one row, left-aligned.
QLayout* ButtonRow(std::initializer_list<QWidget*> buttons);

}  // namespace kelvo
