#pragma once

#include <QLabel>
#include <functional>
#include <string>

namespace kelvo {

class WireField;

/// A line below the field of a number in the Terminal that says, as it is typed, what the number is
/// taken by. It keeps its place when there is nothing to say.
class NumberNote : public QLabel {
 public:
  /// What the page would write.
  struct Shown {
    std::string name;     ///< of the record, UTF-8; empty while it has none
    std::string command;  ///< wire text; empty when there is none yet
  };
  /// What is to be said of a number that this would be written under; empty for nothing. UTF-8
  using Words = std::function<std::string(int number, const Shown& shown)>;

  NumberNote(const char* name, WireField& field, std::function<Shown()> shown);

  void SetWords(Words words);
  /// What is known may have changed.
  void Refresh();
  /// The same when what happens now has come to its end; much may change at once.
  void RefreshSoon();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  WireField& field_;
  std::function<Shown()> shown_;
  Words words_;
  bool waits_ = false;
};

}  // namespace kelvo
