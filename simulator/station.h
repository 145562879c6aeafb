#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "simulator/bus.h"
#include "simulator/line.h"
#include "simulator/pty.h"
#include "simulator/recorder.h"
#include "simulator/replay.h"

namespace kelvo::sim {

/// The Terminals at work: on a pty, in real time, served by a thread of their own, so that no
/// window keeps a character from being in time.
class Station {
 public:
  /// Time as the Terminals of a station know it.
  static Time Now();

  /// `portPath` is where the host finds the port; empty for none. Throws what Pty and PortLink
  /// throw.
  Station(std::string portPath, DeviceFonts fonts);
  Station(const Station&) = delete;
  Station& operator=(const Station&) = delete;
  ~Station();

  /// Before Start: sets the line up, adds Terminals.
  const DeviceFonts& Fonts() const { return fonts_; }
  Line& Wire() { return line_; }
  Terminal* Add(TerminalSetup setup) { return bus_.Add(std::move(setup), fonts_); }
  /// Called in the serving thread after something has happened on the line, and then not again
  /// before Acknowledge.
  void SetActivityHandler(std::function<void()> handler) { activity_ = std::move(handler); }
  /// Called in the serving thread before characters leave for the host; everything is locked.
  void SetAnswerHandler(std::function<void(Bus&)> handler) { answering_ = std::move(handler); }
  /// How the host's characters look, which a pty does not tell; with 0 bits as the Terminals'.
  void SetHostFrame(int bits, int parity);
  /// Writes all traffic as a capture. Throws as Recorder.
  void Record(const std::string& path);
  /// A capture's host in place of the port, when all Terminals are on.
  void Play(ReplayPlan plan);
  /// In place of Start: plays the capture without letting real time pass.
  void PlayAtOnce();
  void Start();
  /// What has come of the capture; nothing before its end.
  std::optional<ReplayReport> Played();
  /// Whether all traffic could be recorded.
  bool RecordGood();
  void Acknowledge() { notified_ = false; }

  /// Runs `use(bus, line, now)` between two events of the line.
  template <typename Use>
  auto With(Use use) {
    const Waker waker{*this};
    const Urgent urgent;
    const std::lock_guard lock(mutex_);
    Pass();
    return use(bus_, line_, line_.Now());
  }

  /// The host's adapter is pulled out: its port hangs up and its path is gone.
  void Unplug();
  /// Throws as the constructor.
  void Plug();
  /// Where there is no port there is nothing to be pulled out.
  bool Plugged();

 private:
  /// As long as it lives its thread goes ahead of others on a busy machine, where that is allowed:
  /// one that serves, or that who serves may have to wait for.
  class Urgent {
   public:
    Urgent();
    ~Urgent();
    Urgent(const Urgent&) = delete;
    Urgent& operator=(const Urgent&) = delete;

   private:
    int before_;
  };
  /// Sends the serving thread round once more, after the lock has been given back.
  struct Waker {
    Station& station;
    ~Waker() { station.Wake(); }
  };

  void Run();
  bool Serve(bool readable);
  HostFraming Framing() const;
  void Pass();
  std::optional<Time> Next() const;
  void Wait(bool& readable);
  void Wake();
  void Notify();

  const std::string portPath_;
  const DeviceFonts fonts_;
  Bus bus_;
  Line line_{bus_};
  std::function<void()> activity_;
  std::function<void(Bus&)> answering_;
  std::atomic<bool> notified_ = false;
  std::atomic<bool> stopping_ = false;
  Handle wake_;
  std::mutex mutex_;  // guards what follows, and bus and line after Start
  Frame hostFrame_{0, 0, 0};
  std::unique_ptr<Pty> pty_;
  std::unique_ptr<PortLink> link_;
  std::unique_ptr<Replay> replay_;
  std::unique_ptr<Recorder> recorder_;
  std::thread thread_;
};

}  // namespace kelvo::sim
