#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kelvo {

/// What has been begun for the operator and is not over yet. Every wait serves the operator, so
/// that an action can begin in the middle of another one; here is known which had better not.
class Undertakings {
 public:
  /// A handler runs as long as this lives.
  class Running {
   public:
    explicit Running(Undertakings& all) : all_(all) {
      if (all_.running_++ == 0) ++all_.deed_;
    }
    ~Running() {
      if (--all_.running_ > 0) return;
      if (all_.idle_) all_.idle_();
      for (const auto& action : std::exchange(all_.later_, {})) action();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    Undertakings& all_;
  };

  /// No other action may speak to the Terminal as long as this lives. `what` runs, as a German
  /// sentence.
  class Alone {
   public:
    Alone(Undertakings& all, std::string what)
        : all_(all), outer_(std::exchange(all.alone_, std::move(what))) {}
    ~Alone() { all_.alone_ = std::move(outer_); }
    Alone(const Alone&) = delete;
    Alone& operator=(const Alone&) = delete;

   private:
    Undertakings& all_;
    std::string outer_;
  };

  /// What runs does nothing but wait for the operator as long as this lives: a box or a dialog
  /// stands in front of it.
  class Resting {
   public:
    explicit Resting(Undertakings& all)
        : all_(all), outer_(std::exchange(all.resting_, all.running_)) {}
    ~Resting() { all_.resting_ = outer_; }
    Resting(const Resting&) = delete;
    Resting& operator=(const Resting&) = delete;

   private:
    Undertakings& all_;
    int outer_;
  };

  /// A handler speaks to the Terminal as long as this lives.
  class Talking {
   public:
    explicit Talking(Undertakings& all) : all_(all) { ++all_.talking_; }
    ~Talking() { --all_.talking_; }
    Talking(const Talking&) = delete;
    Talking& operator=(const Talking&) = delete;

   private:
    Undertakings& all_;
  };

  bool HandlersRun() const { return running_ > 0; }
  /// What the operator has begun: a number that is another one for each handler that begins while
  /// none runs; 0 when none does.
  int Deed() const { return running_ > 0 ? deed_ : 0; }
  /// A handler runs that does not just wait for the operator.
  bool Works() const { return running_ > resting_; }
  bool Talks() const { return talking_ > 0; }
  /// Something is to begin when the last handler is over; what only fills a page had better give
  /// way.
  bool SomethingWaits() const { return !later_.empty(); }
  /// Called once, when the last handler is over.
  void WhenIdle(std::function<void()> action) { later_.push_back(std::move(action)); }
  /// What runs alone; empty when nothing does.
  const std::string& RunsAlone() const { return alone_; }
  /// Called when the last handler is over.
  void SetIdleListener(std::function<void()> listener) { idle_ = std::move(listener); }

 private:
  int running_ = 0;
  int deed_ = 0;
  int resting_ = 0;  // handlers behind the box in front
  int talking_ = 0;
  std::vector<std::function<void()>> later_;
  std::string alone_;
  std::function<void()> idle_;
};

}  // namespace kelvo
