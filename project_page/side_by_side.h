#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

class QPlainTextEdit;

namespace kelvo {

/// Two texts side by side, line by line; what differs stands out. A third one may stand beside
/// them.
class SideBySide : public QWidget {
  Q_OBJECT

 public:
  using Lines = std::vector<std::string>;

  explicit SideBySide(QWidget* parent = nullptr);

  void Show(const Lines& here, const Lines& there, const std::optional<Lines>& result);

 private:
  struct Pane {
    QWidget* whole;
    QPlainTextEdit* text;
  };
  Pane MakePane(const char* name, const QString& caption);
  void Follow(QPlainTextEdit* leader, QPlainTextEdit* follower);

  Pane here_;
  Pane there_;
  Pane result_;
};

}  // namespace kelvo
