#include "adapters/interruption.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace kelvo {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// All that a handler may do is to wake the loop.
volatile int wakes = -1;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void Wake(int) {
  const int error = errno;
  const char byte = 0;
  if (write(wakes, &byte, 1) < 0) {
    // The pipe is full of others.
  }
  errno = error;
}

void Handle(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) {
    // Who began it may want that it goes on when the terminal is closed.
    struct sigaction before {};
    const bool ignored = sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN;
    if (signal != SIGHUP || !ignored) sigaction(signal, &action, nullptr);
  }
}

}  // namespace

Interruption::~Interruption() { End(); }

void Interruption::SetHandler(std::function<void()> handler) {
  handler_ = std::move(handler);
  handler_ ? Begin() : End();
}

void Interruption::Begin() {
  if (notifier_ != nullptr || pipe2(pipe_, O_CLOEXEC | O_NONBLOCK) != 0) return;
  wakes = pipe_[1];
  notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
    char byte = 0;
    while (read(pipe_[0], &byte, 1) == 1) {
      if (handler_) handler_();
    }
  });
  Handle(Wake);
}

void Interruption::End() {
  if (notifier_ == nullptr) return;
  Handle(SIG_DFL);
  notifier_.reset();
  for (int& end : pipe_) close(std::exchange(end, -1));
}

}  // namespace kelvo
