#include "shell/qt_operator.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QWindow>
#include <algorithm>

#include "shell/box_text.h"
#include "shell/file_dialog.h"
#include "store/own_files.h"
#include "widgets/form.h"

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

void Fill(QMessageBox& box, const std::string& text, Icon icon, const std::string& title) {
  box.setWindowTitle(Title(title));
  box.setIcon(BoxIcon(icon));
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setText(QString::fromStdString(text));
}

// "Text (txt) |*.txt" as Qt's dialogs want it: "Text (txt) (*.txt)"; further pairs behind another
// bar are further choices.
QString DialogFilter(const std::string& filter) {
  const QStringList parts = QString::fromStdString(filter).split(u'|');
  QStringList choices;
  for (qsizetype i = 1; i < parts.size(); i += 2) {
    choices << QStringLiteral("%1 (%2)").arg(parts[i - 1].trimmed(), parts[i]);
  }
  return choices.join(QStringLiteral(";;"));
}

// Neither a box that goes when it has been read nor a window that only shows progress.
bool Stays(const QWidget& window) {
  return qobject_cast<const QMessageBox*>(&window) == nullptr && window.windowType() != Qt::Tool;
}

// Where operators keep what is theirs.
QString OperatorsFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

}  // namespace

QtOperator::~QtOperator() {
  for (FileDialog* const dialog : {opening_.data(), saving_.data()}) delete dialog;
}

void QtOperator::SetWindow(QWidget* window) {
  window_ = window;
  QObject::disconnect(qApp, nullptr, &following_, nullptr);
  QObject::connect(qApp, &QApplication::focusWindowChanged, &following_, [this] { Remember(); });
}

void QtOperator::Remember() {
  QWidget* active = QApplication::activeWindow();
  while (active != nullptr && (!Stays(*active) || !active->isVisible())) {
    active = active->parentWidget() != nullptr ? active->parentWidget()->window() : nullptr;
  }
  if (active == nullptr) return;
  std::erase_if(used_, [&](const auto& window) { return !window || window == active; });
  used_.emplace_back(active);
}

// What is asked comes up over the window that it is about: the editor's over the editor, a dialog's
// over the dialog. Another box is none, because it goes when it has been read. When a dialog has
// just closed no window is active yet: then it is the one before.
QWidget* QtOperator::Owner() {
  if (asking_ != nullptr && asking_->isVisible()) return asking_;
  Remember();
  const auto open = std::find_if(used_.rbegin(), used_.rend(), [](const auto& window) {
    return window != nullptr && window->isVisible();
  });
  return open != used_.rend() ? open->data() : window_;
}

// What one action asks one after the other stays over one window, whichever the system brings to
// the front meanwhile.
int QtOperator::Run(QDialog& dialog) {
  const Undertakings::Resting resting(Begun());
  const int result = dialog.exec();
  asking_ = dialog.parentWidget();
  QTimer::singleShot(0, &following_, [this] { asking_ = nullptr; });
  return result;
}

QPushButton* QtOperator::Explain(QMessageBox& box, const std::string& text,
                                 const std::string& hint) const {
  const std::optional<Advice> advice = AdviceOn(text, hint);
  box.setInformativeText(QString::fromStdString(advice ? advice->hint : hint));
  if (!advice) return nullptr;
  auto* const traffic =
      advice->traffic
          ? Named(box.addButton(QStringLiteral("&Datenverkehr zeigen"), QMessageBox::ActionRole),
                  "cmdVerkehr")
          : nullptr;
  auto* const help =
      Named(box.addButton(QStringLiteral("&Hilfe"), QMessageBox::HelpRole), "cmdHilfe");
  // The box stays beside the help, so it must not hear of the click.
  help->disconnect();
  QObject::connect(help, &QPushButton::clicked, &box,
                   [this, chapter = advice->chapter] { Advisers().showHelp(chapter); });
  return traffic;
}

// What fails by a loss usually comes before the loss is told of, and in the middle of its box.
bool QtOperator::FoldIn(const std::string& text) {
  const std::optional<Advice> advice = AdviceOn(text, {});
  if (!advice || advice->loss == 0) return false;
  const bool shown = lossBox_ != nullptr && lossBox_->isVisible();
  if (!shown) return advice->loss == toldLoss_;
  toldLoss_ = advice->loss;
  const QString more = QString::fromStdString(text);
  const QString told = lossBox_->informativeText();
  if (lossBox_->text() == more || told.contains(more)) return true;
  lossBox_->setInformativeText(told + QStringLiteral("\n\n") + more);
  FitTexts(*lossBox_);
  return true;
}

void QtOperator::TellsOfLoss(QMessageBox& box, const std::string& text) {
  const std::optional<Advice> advice = AdviceOn(text, {});
  if (!advice || advice->loss == 0) return;
  toldLoss_ = advice->loss;
  lossBox_ = &box;
}

void QtOperator::Message(const std::string& text, Icon icon, const std::string& title,
                         const std::string& hint) {
  if (loop_.Closing()) return;
  Told(text);
  if (FoldIn(text)) return;
  QMessageBox box(Owner());
  Fill(box, text, icon, title);
  QPushButton* const ok = box.addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  QPushButton* const traffic = Explain(box, text, hint);
  box.setDefaultButton(ok);
  box.setEscapeButton(ok);
  FitTexts(box);
  TellsOfLoss(box, text);
  Run(box);
  if (traffic != nullptr && box.clickedButton() == traffic) Advisers().showTraffic();
}

void QtOperator::Notify(const std::string& text, Icon icon) {
  if (loop_.Closing()) return;
  Told(text);
  if (FoldIn(text)) return;
  auto* box = new QMessageBox(Owner());
  box->setAttribute(Qt::WA_DeleteOnClose);
  Fill(*box, text, icon, {});
  QPushButton* const ok = box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
  if (QPushButton* const traffic = Explain(*box, text, {})) {
    QObject::connect(traffic, &QPushButton::clicked, box, [this] { Advisers().showTraffic(); });
  }
  box->setDefaultButton(ok);
  box->setEscapeButton(ok);
  FitTexts(*box);
  TellsOfLoss(*box, text);
  box->open();
}

bool QtOperator::Ask(const std::string& text, Icon icon, const std::string& title,
                     Proposal proposal, const std::string& hint) {
  if (loop_.Closing()) return false;
  QMessageBox box(Owner());
  Fill(box, text, icon, title);
  QPushButton* const yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
  QPushButton* const no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
  if (QPushButton* const traffic = Explain(box, text, hint)) {
    // To look is no answer.
    traffic->disconnect();
    QObject::connect(traffic, &QPushButton::clicked, &box, [this] { Advisers().showTraffic(); });
  }
  // A hasty Return must not destroy anything.
  box.setDefaultButton(ProposesNo(text, icon, proposal) ? no : yes);
  const bool keeps = proposal == Proposal::YesAlways;
  box.setEscapeButton(keeps ? yes : no);
  FitTexts(box);
  Run(box);
  return keeps ? box.clickedButton() != no : box.clickedButton() == yes;
}

Decision QtOperator::AskToSave(const std::string& text) {
  if (loop_.Closing()) return Decision::Cancel;
  QMessageBox box(Owner());
  Fill(box, text, Icon::Exclamation, {});
  QPushButton* const save = box.addButton(QStringLiteral("&Speichern"), QMessageBox::AcceptRole);
  QPushButton* const discard =
      box.addButton(QStringLiteral("&Verwerfen"), QMessageBox::DestructiveRole);
  QPushButton* const cancel = box.addButton(QStringLiteral("Abbrechen"), QMessageBox::RejectRole);
  box.setDefaultButton(save);
  box.setEscapeButton(cancel);
  FitTexts(box);
  Run(box);
  if (box.clickedButton() == save) return Decision::Save;
  return box.clickedButton() == discard ? Decision::Discard : Decision::Cancel;
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
  if (Run(dialog) != QDialog::Accepted) return std::nullopt;
  return dialog.textValue().toStdString();
}

// Behind another one of its kind, which stands there already, one of its own.
FileDialog* QtOperator::FileDialogFor(bool saves) {
  QPointer<FileDialog>& kept = saves ? saving_ : opening_;
  const bool taken = kept != nullptr && kept->isVisible();
  if (kept != nullptr && !taken) return kept;
  auto* const dialog = new FileDialog(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  if (taken) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
  } else {
    kept = dialog;
  }
  return dialog;
}

std::optional<std::string> QtOperator::ChooseFile(FileDialog& dialog) {
  const bool saves = dialog.acceptMode() == QFileDialog::AcceptSave;
  if (QFileInfo(folder_).isDir()) dialog.setDirectory(folder_);
  if (saves && IsOwnFolder(dialog.directory().path())) dialog.setDirectory(OperatorsFolder());
  const QPointer<FileDialog> there(&dialog);
  const bool chosen = Run(dialog) == QDialog::Accepted;
  const QString name = chosen && there ? dialog.selectedFiles().value(0) : QString();
  // It outlives the window that it stood over.
  if (there) dialog.setParent(nullptr, dialog.windowFlags());
  if (name.isEmpty()) return std::nullopt;
  folder_ = QFileInfo(name).absolutePath();
  return name.toStdString();
}

std::optional<std::string> QtOperator::OpenFile(const std::string& title,
                                                const std::string& filter) {
  if (loop_.Closing()) return std::nullopt;
  FileDialog& dialog = *FileDialogFor(false);
  dialog.Renew(Owner(), Title(title), DialogFilter(filter));
  return ChooseFile(dialog);
}

std::optional<std::string> QtOperator::SaveFile(const std::string& title,
                                                const std::string& filter) {
  if (loop_.Closing()) return std::nullopt;
  FileDialog& dialog = *FileDialogFor(true);
  dialog.Renew(Owner(), Title(title), DialogFilter(filter));
  dialog.SetJudge([this](const QString& path) { return MaySaveAs(path); });
  dialog.setDefaultSuffix(QString::fromStdString(filter).section(u'.', -1));
  return ChooseFile(dialog);
}

bool QtOperator::IsOwnFolder(const QString& folder) const {
  return std::any_of(ownFolders_.begin(), ownFolders_.end(), [&folder](const std::string& own) {
    return IsSameFolder(own, folder.toStdString());
  });
}

bool QtOperator::MaySaveAs(const QString& path) {
  const std::string name = path.toStdString();
  if (std::none_of(ownFolders_.begin(), ownFolders_.end(),
                   [&name](const std::string& own) { return IsOwnFile(own, name); })) {
    return true;
  }
  Message("Diese Datei gehört kelvo selbst und wird nicht überschrieben:\n" + name +
              "\nBitte einen anderen Namen oder Ordner wählen.",
          Icon::Exclamation, {}, {});
  return false;
}

void QtOperator::Beep() { QApplication::beep(); }

}  // namespace kelvo
