#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kelvo {

/// What the operator has done and can take back, the latest first.
class Deeds {
 public:
  /// `what` was done, a German noun phrase; `undo` puts back what it took away.
  void Note(std::string what, std::function<void()> undo) {
    if (deeds_.size() == kKept) deeds_.erase(deeds_.begin());
    deeds_.push_back({std::move(what), std::move(undo)});
    Changed();
  }
  /// The latest deed; empty when there is none.
  std::string Latest() const { return deeds_.empty() ? std::string() : deeds_.back().what; }
  /// Takes the latest deed back. What fails in that is thrown; it is tried once.
  void Undo() {
    if (deeds_.empty()) return;
    const Deed latest = std::move(deeds_.back());
    deeds_.pop_back();
    Changed();
    latest.undo();
  }
  /// Told when there is another latest deed.
  void SetListener(std::function<void()> listener) { listener_ = std::move(listener); }

 private:
  struct Deed {
    std::string what;
    std::function<void()> undo;
  };
  static constexpr std::size_t kKept = 50;

  void Changed() {
    if (listener_) listener_();
  }

  std::vector<Deed> deeds_;
  std::function<void()> listener_;
};

}  // namespace kelvo
