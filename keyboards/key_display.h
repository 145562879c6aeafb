#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kelvo {

/// Colours of the key grid, by their numbers in the 16-colour palette.
enum class KeyColour { LightBlue = 9, White = 15 };

/// The 64 boxes of the matrix key grid `txtTastMatrix` and the label `lblTastKlartext`, as the
/// display of received keys needs them. The box of row r and column c has the index 8 c + r.
/// Texts are wire texts.
class KeyGrid {
 public:
  virtual ~KeyGrid() = default;
  virtual std::string KeyText(int index) const = 0;
  virtual void SetKeyText(int index, const std::string& text) = 0;
  virtual void PaintKey(int index, KeyColour colour) = 0;
  virtual std::string Klartext() const = 0;
  virtual void SetKlartext(const std::string& text) = 0;
};

/// Shows on the key grid which key of the Terminal's keypad was pressed.
class KeyDisplay {
 public:
  explicit KeyDisplay(KeyGrid& grid) : grid_(grid) {}

  /// Index (0..63) of the box that is highlighted at present.
  int KeyHighlightIndex = 0;

  /// One received text, not empty. A first code above 127 is the position of a key without a
  /// table: column in bits 0-2, row in bits 4-6. Other codes are looked for in the boxes.
  void Show(std::string_view received);
  /// The key is released as far as anyone can tell: white again, and the label empty.
  void Release();

 private:
  void ShowPosition(unsigned char code);
  void ShowCharacter(std::string_view received);

  KeyGrid& grid_;
};

}  // namespace kelvo
