#pragma once

#include <QWidget>

#include "base/event_loop.h"
#include "base/operator.h"

namespace kelvo {

/// Asks the person at the screen with Qt's own boxes. While the program is closing nobody is asked.
class QtOperator : public Operator {
 public:
  explicit QtOperator(const EventLoop& loop) : loop_(loop) {}

  /// The window that boxes belong to while the person works in none of the program's.
  void SetWindow(QWidget* window) { window_ = window; }

  void Message(const std::string& text, Icon icon, const std::string& title) override;
  void Notify(const std::string& text, Icon icon) override;
  bool Ask(const std::string& text, Icon icon, const std::string& title) override;
  std::optional<std::string> Input(const std::string& prompt, const std::string& proposed,
                                   const Typed& typed) override;
  std::optional<std::string> OpenFile(const std::string& title, const std::string& filter) override;
  std::optional<std::string> SaveFile(const std::string& title, const std::string& filter) override;
  void Beep() override;

 private:
  QWidget* Owner() const;

  const EventLoop& loop_;
  QWidget* window_ = nullptr;
};

}  // namespace kelvo
