#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace kelvo::cli {

/// Ctrl+C and its like as events: once somebody listens they do not end the program any more.
class Interruption : public QObject {
  Q_OBJECT

 public:
  Interruption() = default;
  ~Interruption() override;

  /// Called for each one; an empty one leaves it to the system again.
  void SetHandler(std::function<void()> handler);

 private:
  void Begin();
  void End();

  std::function<void()> handler_;
  int pipe_[2] = {-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kelvo::cli
