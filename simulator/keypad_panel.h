#pragma once

#include <QGroupBox>
#include <array>
#include <optional>

class QToolButton;

namespace kelvo::sim {

/// The matrix keypad: a button for each crossing of its rows (on P0) and columns (on P1).
class KeypadPanel : public QGroupBox {
  Q_OBJECT

 public:
  static constexpr int kSide = 8;
  struct Key {
    bool wired = false;
    std::optional<unsigned char> code;  ///< what it sends; nothing for an unused key
    bool operator==(const Key&) const = default;
  };
  using Keys = std::array<std::array<Key, kSide>, kSide>;  ///< [row][column]

  explicit KeypadPanel(QWidget* parent = nullptr);
  void Show(const Keys& keys);

 Q_SIGNALS:
  void Pressed(int row, int column);
  void Released();

 private:
  void ShowKey(int row, int column, const Key& key);

  std::array<std::array<QToolButton*, kSide>, kSide> buttons_{};
  std::optional<Keys> shown_;
};

}  // namespace kelvo::sim
