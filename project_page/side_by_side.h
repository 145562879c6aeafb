#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

class QPlainTextEdit;

namespace kelvo {

/// Two texts side by side, line by line; what differs stands out. Beside them may stand what both
/// have come from, and what is made of them.
class SideBySide : public QWidget {
  Q_OBJECT

 public:
  using Lines = std::vector<std::string>;

  explicit SideBySide(QWidget* parent = nullptr);

  void Show(const Lines& here, const Lines& there, const std::optional<Lines>& base = {},
            const std::optional<Lines>& result = {});

 private:
  struct Pane {
    QWidget* whole;
    QPlainTextEdit* text;
  };
  Pane MakePane(const char* name, const QString& caption);
  void Follow(QPlainTextEdit* leader, QPlainTextEdit* follower);

  static void ShowIf(const Pane& pane, const std::optional<Lines>& lines);

  Pane base_;
  Pane here_;
  Pane there_;
  Pane result_;
};

}  // namespace kelvo
