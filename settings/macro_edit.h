#pragma once

#include <string>

#include "settings/macro_check.h"
#include "settings/macro_highlighter.h"
#include "settings/macro_text.h"
#include "widgets/wire_field.h"

class QListWidget;

namespace kelvo {

/// The editor of a macro text: in colours, and with the command letters to choose from behind an
/// ESC. The list only offers: without a choice every key writes what it always does.
class MacroEdit : public WireEdit {
  Q_OBJECT

 public:
  explicit MacroEdit(QWidget* parent = nullptr);

  void SetDisplay(DisplaySize display) { display_ = display; }
  /// Colours the text that is shown.
  void ShowRemarks(const std::string& wire, const std::vector<Remark>& remarks);
  /// The character of the wire text behind the caret.
  std::size_t Caret() const;
  /// The first that is selected; without a selection the same.
  std::size_t SelectionStart() const;
  /// Selects a place of the wire text, and sees to it that it can be seen.
  void Select(std::size_t position, std::size_t length);
  /// Offers what may follow at the caret, if anything may.
  void Complete();

 Q_SIGNALS:
  void PaletteChanged();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  bool ListKey(const QKeyEvent& event);
  void Offer(const Completion& completion);
  void PlaceList();
  void Take(int row);
  void FollowCaret();
  std::size_t WirePlace(int position) const;

  MacroHighlighter highlighter_;
  QListWidget* const lstMakroBefehle_;
  DisplaySize display_;
  Completion completion_;
};

}  // namespace kelvo
