#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QWidget>
#include <string>
#include <utility>
#include <vector>

#include "base/event_loop.h"
#include "base/operator.h"

class QDialog;
class QPushButton;

namespace kelvo {

class FileDialog;

/// Asks the person at the screen with Qt's own boxes. While the program is closing nobody is asked.
class QtOperator : public Operator {
 public:
  explicit QtOperator(const EventLoop& loop) : loop_(loop) {}
  ~QtOperator() override;
  QtOperator(const QtOperator&) = delete;
  QtOperator& operator=(const QtOperator&) = delete;

  /// The window that boxes belong to while the person works in none of the program's
  /// and has worked in none that is still open.
  void SetWindow(QWidget* window);
  /// Where the next file dialog opens; empty or gone: in the current folder. Each dialog in which a
  /// file is chosen sets it.
  void SetFolder(const QString& folder) { folder_ = folder; }
  QString Folder() const { return folder_; }
  /// Where the programs keep files of their own: none of them can be chosen to save over, and no
  /// dialog that saves opens there.
  void SetOwnFolders(std::vector<std::string> folders) { ownFolders_ = std::move(folders); }

  void Message(const std::string& text, Icon icon, const std::string& title,
               const std::string& hint) override;
  void Notify(const std::string& text, Icon icon) override;
  bool Ask(const std::string& text, Icon icon, const std::string& title, Proposal proposal,
           const std::string& hint) override;
  Decision AskToSave(const std::string& text) override;
  std::optional<std::string> Input(const std::string& prompt, const std::string& proposed,
                                   const Typed& typed) override;
  std::optional<std::string> OpenFile(const std::string& title, const std::string& filter) override;
  std::optional<std::string> SaveFile(const std::string& title, const std::string& filter) override;
  void Beep() override;
  bool IsThere() const override { return !loop_.Closing(); }

 private:
  QWidget* Owner();
  int Run(QDialog& dialog);
  void Remember();
  /// Adds what leads on; the button that leads to the traffic, nullptr without any.
  QPushButton* Explain(QMessageBox& box, const std::string& text, const std::string& hint) const;
  /// Whether another box tells of the loss that has caused this, or has told of it.
  bool FoldIn(const std::string& text);
  void TellsOfLoss(QMessageBox& box, const std::string& text);
  FileDialog* FileDialogFor(bool saves);
  std::optional<std::string> ChooseFile(FileDialog& dialog);
  bool IsOwnFolder(const QString& folder) const;
  bool MaySaveAs(const QString& path);

  const EventLoop& loop_;
  QWidget* window_ = nullptr;
  std::vector<QPointer<QWidget>> used_;  // windows that stay, the one used last at the end
  QPointer<QWidget> asking_;             // until the action that asks is over
  QPointer<FileDialog> opening_;
  QPointer<FileDialog> saving_;
  QPointer<QMessageBox> lossBox_;
  int toldLoss_ = 0;
  QObject following_;
  QString folder_;
  std::vector<std::string> ownFolders_;
};

}  // namespace kelvo
