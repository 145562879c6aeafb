#pragma once

#include <QFileDialog>
#include <functional>

namespace kelvo {

/// The toolkit's dialog for files, used again and again: each one that is made leaves some 18 KB
/// behind. Asks whether a file may be saved over before the toolkit does, and stays open where it
/// may not.
class FileDialog : public QFileDialog {
 public:
  explicit FileDialog(AcceptMode mode);

  /// As a new one, over this window.
  void Renew(QWidget* owner, const QString& title, const QString& filter);
  using Judge = std::function<bool(const QString& path)>;
  void SetJudge(Judge judge) { judge_ = std::move(judge); }
  void accept() override;
  void done(int result) override;

 private:
  Judge judge_;
};

}  // namespace kelvo
