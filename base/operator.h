#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kelvo {

enum class Icon { None, Information, Question, Exclamation };

/// The person in front of the screen. All texts are UTF-8. While the program is closing nobody is
/// asked any more: questions are answered with No, inputs and dialogs as cancelled.
class Operator {
 public:
  virtual ~Operator() = default;

  /// A message box with the OK button alone. An empty title means the program's name.
  virtual void Message(const std::string& text, Icon icon = Icon::None,
                       const std::string& title = {}) = 0;
  /// The same without waiting for the OK.
  virtual void Notify(const std::string& text, Icon icon = Icon::None) = 0;
  /// A Yes/No message box; true for Yes. An empty title means the program's name.
  virtual bool Ask(const std::string& text, Icon icon = Icon::Question,
                   const std::string& title = {}) = 0;
  /// Told the text in an input box each time that it changes.
  using Typed = std::function<void(const std::string& text)>;
  /// An input box; nothing when it was cancelled.
  virtual std::optional<std::string> Input(const std::string& prompt, const std::string& proposed,
                                           const Typed& typed = {}) = 0;
  /// A file dialog; nothing when it was cancelled. `filter` is "Label |*.ext".
  virtual std::optional<std::string> OpenFile(const std::string& title,
                                              const std::string& filter) = 0;
  virtual std::optional<std::string> SaveFile(const std::string& title,
                                              const std::string& filter) = 0;
  virtual void Beep() = 0;
};

}  // namespace kelvo
