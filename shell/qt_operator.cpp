#include "shell/qt_operator.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>

namespace kelvo {
namespace {

QString Title(const std::string& title) {
  return title.empty() ? QApplication::applicationDisplayName() : QString::fromStdString(title);
}

QMessageBox::Icon BoxIcon(Icon icon) {
  switch (icon) {
    case Icon::Information:
      return QMessageBox::Information;
    case Icon::Question:
      return QMessageBox::Question;
    case Icon::Exclamation:
      return QMessageBox::Warning;
    case Icon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

// A long line without blanks, such as a table's codes, would leave the screen; it may be broken
// behind its commas.
QString Breakable(const QString& text) {
  constexpr qsizetype longestLine = 80;
  QString breakable = text;
  if (text.size() > longestLine && !text.contains(u' ')) {
    breakable.replace(QStringLiteral(","), QStringLiteral(",\u200B"));
  }
  return breakable;
}

void Fill(QMessageBox& box, const std::string& text, Icon icon, const std::string& title) {
  box.setWindowTitle(Title(title));
  box.setIcon(BoxIcon(icon));
  box.setTextFormat(Qt::PlainText);
  box.setText(Breakable(QString::fromStdString(text)));
}

// "Text (txt) |*.txt" as Qt's dialogs want it: "Text (txt) (*.txt)".
QString DialogFilter(const std::string& filter) {
  const QString text = QString::fromStdString(filter);
  return text.section(u'|', 0, 0).trimmed() + QStringLiteral(" (") + text.section(u'|', 1) + u')';
}

std::optional<std::string> FileName(const QString& name) {
  return name.isEmpty() ? std::nullopt : std::optional(name.toStdString());
}

}  // namespace

// A box comes up over the window that it is about: the editor's over the editor.
QWidget* QtOperator::Owner() const {
  auto* const active = qobject_cast<QMainWindow*>(QApplication::activeWindow());
  return active != nullptr ? active : window_;
}

void QtOperator::Message(const std::string& text, Icon icon, const std::string& title) {
  if (loop_.Closing()) return;
  QMessageBox box(Owner());
  Fill(box, text, icon, title);
  box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  box.exec();
}

void QtOperator::Notify(const std::string& text, Icon icon) {
  if (loop_.Closing()) return;
  auto* box = new QMessageBox(Owner());
  box->setAttribute(Qt::WA_DeleteOnClose);
  Fill(*box, text, icon, {});
  box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  box->open();
}

bool QtOperator::Ask(const std::string& text, Icon icon, const std::string& title) {
  if (loop_.Closing()) return false;
  QMessageBox box(Owner());
  Fill(box, text, icon, title);
  QPushButton* const yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
  QPushButton* const no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
  // A hasty Return must not destroy anything.
  box.setDefaultButton(icon == Icon::Exclamation ? no : yes);
  box.setEscapeButton(no);
  box.exec();
  return box.clickedButton() == yes;
}

std::optional<std::string> QtOperator::Input(const std::string& prompt, const std::string& proposed,
                                             const Typed& typed) {
  if (loop_.Closing()) return std::nullopt;
  QInputDialog dialog(Owner());
  dialog.setWindowTitle(QApplication::applicationDisplayName());
  dialog.setLabelText(QString::fromStdString(prompt));
  dialog.setTextValue(QString::fromStdString(proposed));
  dialog.setOkButtonText(QStringLiteral("OK"));
  dialog.setCancelButtonText(QStringLiteral("Abbrechen"));
  if (typed) {
    QObject::connect(&dialog, &QInputDialog::textValueChanged,
                     [&typed](const QString& text) { typed(text.toStdString()); });
  }
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue().toStdString();
}

std::optional<std::string> QtOperator::OpenFile(const std::string& title,
                                                const std::string& filter) {
  if (loop_.Closing()) return std::nullopt;
  return FileName(QFileDialog::getOpenFileName(Owner(), Title(title), {}, DialogFilter(filter)));
}

std::optional<std::string> QtOperator::SaveFile(const std::string& title,
                                                const std::string& filter) {
  if (loop_.Closing()) return std::nullopt;
  QFileDialog dialog(Owner(), Title(title), {}, DialogFilter(filter));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QString::fromStdString(filter).section(u'.', -1));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return FileName(dialog.selectedFiles().value(0));
}

void QtOperator::Beep() { QApplication::beep(); }

}  // namespace kelvo
