#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace kelvo {

/// Ctrl+C, the end of the session and whatever else tells a program to end, as events: once
/// somebody listens they do not end it by themselves. One for each program.
class Interruption {
 public:
  Interruption() = default;
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Called for each one; an empty one leaves it to the system again.
  void SetHandler(std::function<void()> handler);

 private:
  void Begin();
  void End();

  std::function<void()> handler_;
  int pipe_[2] = {-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kelvo
