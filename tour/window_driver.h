#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QString>
#include <QWidget>
#include <deque>
#include <functional>
#include <stdexcept>

namespace kelvo {

/// Drives the real windows by the names of their controls, as an assistive tool would. A control
/// that is missing, hidden or disabled throws std::runtime_error.
class WindowDriver : public QObject {
  Q_OBJECT

 public:
  explicit WindowDriver(QWidget& window);

  template <typename Control = QWidget>
  Control& Find(const QString& name) const {
    auto* control = dynamic_cast<Control*>(FindObject(name));
    if (control == nullptr) throw std::runtime_error("no control " + name.toStdString());
    return *control;
  }

  /// Presses a button, or triggers a menu entry.
  void Click(const QString& name);
  /// Replaces a field's text as if it were typed, and leaves the field.
  void Type(const QString& name, const QString& text);
  /// Chooses an entry of a list by its text.
  void Choose(const QString& list, const QString& text);
  void ShowTab(int tab);
  /// A label's or a field's text.
  QString Text(const QString& name) const;

  /// Lets the program run until `done`; throws when that takes longer than a generous limit.
  void Until(const QString& what, const std::function<bool()>& done);

  /// The next dialogs that open, in their order, are handed to these. A dialog without one is
  /// closed and makes the next call throw.
  using DialogHandler = std::function<void(QDialog&)>;
  void OnDialog(DialogHandler handler) { handlers_.push_back(std::move(handler)); }
  /// Presses the button with this caption (mnemonics aside) in a dialog.
  static void Press(QDialog& dialog, const QString& caption);

  /// Another top-level window of the program, by its name.
  QWidget& FindWindow(const QString& name) const;
  /// Drags with the left mouse button held, in a control's coordinates.
  static void Drag(QWidget& control, QPoint from, QPoint to);

  /// Saves what a window shows.
  static void Picture(QWidget& window, const QString& file);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QObject* FindObject(const QString& name) const;
  QWidget& Usable(const QString& name) const;
  void Handle(QDialog& dialog);
  void Check();

  QWidget& window_;
  std::deque<DialogHandler> handlers_;
  QString problem_;
};

}  // namespace kelvo
