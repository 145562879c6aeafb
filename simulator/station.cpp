#include "simulator/station.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <system_error>

namespace kelvo::sim {
namespace {

// All that the host writes is taken off the pty at once, because what the kernel holds back there
// does not always go away when the host gives it up. The limit only bounds the memory.
constexpr std::size_t kReadAhead = 1 << 20;
constexpr int kUrgent = -10;

}  // namespace

// Of a thread, as Linux has it.
Station::Urgent::Urgent() : before_(getpriority(PRIO_PROCESS, 0)) {
  setpriority(PRIO_PROCESS, 0, kUrgent);
}

Station::Urgent::~Urgent() { setpriority(PRIO_PROCESS, 0, before_); }

Time Station::Now() { return std::chrono::steady_clock::now().time_since_epoch(); }

Station::Station(std::string portPath, DeviceFonts fonts)
    : portPath_(std::move(portPath)),
      fonts_(std::move(fonts)),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!wake_.Open()) throw std::system_error(errno, std::generic_category(), "eventfd");
  Plug();
}

Station::~Station() {
  stopping_ = true;
  Wake();
  if (thread_.joinable()) thread_.join();
}

void Station::Start() {
  thread_ = std::thread([this] { Run(); });
}

void Station::Plug() {
  {
    const std::lock_guard lock(mutex_);
    if (pty_ || portPath_.empty()) return;
    auto pty = std::make_unique<Pty>();
    link_ = std::make_unique<PortLink>(portPath_, pty->HostPath());
    pty_ = std::move(pty);
  }
  Wake();
}

void Station::Unplug() {
  if (portPath_.empty()) return;
  {
    const std::lock_guard lock(mutex_);
    link_.reset();
    pty_.reset();
    line_.DiscardFromHost(Now());  // it was in the adapter
    line_.ForgetXoff(Now());
  }
  Wake();
}

void Station::SetHostFrame(int bits, int parity) {
  const std::lock_guard lock(mutex_);
  hostFrame_ = {0, bits, parity};
}

bool Station::Plugged() {
  const std::lock_guard lock(mutex_);
  return pty_ != nullptr || portPath_.empty();
}

void Station::Record(const std::string& path) {
  recorder_ = std::make_unique<Recorder>(path, Now());
}

bool Station::RecordGood() {
  const std::lock_guard lock(mutex_);
  return !recorder_ || recorder_->Good();
}

void Station::Play(ReplayPlan plan) {
  HostFraming framing = line_.Framing();
  framing.bits = hostFrame_.bits;
  framing.parity = hostFrame_.parity;
  line_.SetHostFraming(framing);
  line_.Advance(Now());
  replay_ = std::make_unique<Replay>(std::move(plan), bus_, line_, line_.Now());
}

void Station::PlayAtOnce() {
  while (const auto next = replay_->NextEvent()) replay_->Advance(*next);
}

std::optional<ReplayReport> Station::Played() {
  const std::lock_guard lock(mutex_);
  if (!replay_ || !replay_->Done()) return std::nullopt;
  return replay_->Report();
}

// ---- the serving thread ----

void Station::Run() {
  // A wake-up may otherwise come 50 us late, a tenth of a character at 19200 baud.
  prctl(PR_SET_TIMERSLACK, 1UL);
  const Urgent urgent;
  bool readable = false;
  while (!stopping_) {
    if (Serve(readable)) Notify();
    Wait(readable);
  }
}

// Takes what the host has sent and passes time on; whether anything happened.
bool Station::Serve(bool readable) {
  const std::lock_guard lock(mutex_);
  const std::optional<Time> due = Next();
  bool busy = due && *due <= Now();
  if (readable && pty_) {
    const Pty::Received received = pty_->Read();
    const Time now = Now();
    if (received.discarded) line_.DiscardFromHost(now);
    if (received.handshakeSet) line_.ForgetXoff(now);
    line_.SetHostFraming(Framing());
    line_.FromHost(received.bytes, now);
    if (recorder_) recorder_->Add(Direction::ToTerminal, received.bytes, now);
    busy = true;
  }
  Pass();
  return busy;
}

HostFraming Station::Framing() const {
  HostFraming framing = pty_->Framing();
  framing.bits = hostFrame_.bits;
  framing.parity = hostFrame_.parity;
  return framing;
}

void Station::Pass() {
  const Time now = Now();
  if (replay_) return replay_->Advance(now);
  const std::string toHost = line_.Advance(now);
  if (answering_ && !toHost.empty()) answering_(bus_);
  if (pty_) pty_->Write(toHost);
  if (!recorder_) return;
  recorder_->Add(Direction::FromTerminal, toHost, Now());  // by now the host can have it
  recorder_->Advance(now);
}

std::optional<Time> Station::Next() const {
  std::optional<Time> next = line_.NextEvent();
  if (replay_) next = replay_->NextEvent();
  const std::optional<Time> due = recorder_ ? recorder_->Due() : std::nullopt;
  return due && (!next || *due < *next) ? due : next;
}

void Station::Wait(bool& readable) {
  std::array<pollfd, 2> handles = {{{wake_.Get(), POLLIN, 0}, {-1, POLLPRI, 0}}};
  std::optional<Time> next;
  {
    const std::lock_guard lock(mutex_);
    if (pty_) handles[1].fd = pty_->Get();
    if (line_.WaitingFromHost() < kReadAhead) handles[1].events |= POLLIN;
    next = Next();
  }
  // The span is worked out anew from an absolute time each round, so lateness never adds up.
  timespec span{};
  if (next) {
    constexpr std::int64_t kSecond = 1'000'000'000;
    const std::int64_t left = std::max<std::int64_t>(0, (*next - Now()).count());
    span = {static_cast<time_t>(left / kSecond), static_cast<long>(left % kSecond)};
  }
  ppoll(handles.data(), handles.size(), next ? &span : nullptr, nullptr);
  if (handles[0].revents != 0) {
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t ignored = read(wake_.Get(), &count, sizeof count);
  }
  readable = handles[1].revents != 0;
}

void Station::Wake() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t ignored = write(wake_.Get(), &one, sizeof one);
}

void Station::Notify() {
  if (activity_ && !notified_.exchange(true)) activity_();
}

}  // namespace kelvo::sim
