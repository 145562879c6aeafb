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
  /// What is to be said of a number for the record of that name; empty for nothing. UTF-8
  using Words = std::function<std::string(int number, const std::string& record)>;

  NumberNote(const char* name, WireField& field, std::function<std::string()> record);

  void SetWords(Words words);
  /// What is known may have changed.
  void Refresh();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  WireField& field_;
  std::function<std::string()> record_;
  Words words_;
};

}  // namespace kelvo
