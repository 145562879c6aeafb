#pragma once

#include <QGroupBox>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "graphics/pixel_map.h"
#include "simulator/eeprom.h"

class QLabel;
class QListWidget;
class QProgressBar;

namespace kelvo::sim {

/// What lies in the EEPROM, and the bitmaps in it as pictures.
class MemoryPanel : public QGroupBox {
  Q_OBJECT

 public:
  struct Contents {
    std::uint64_t revision = 0;  ///< of the EEPROM
    int capacity = 0;            ///< bytes
    int free = 0;                ///< bytes
    QString text;                ///< kinds and numbers of the records
    std::vector<std::pair<int, PixelMap>> bitmaps;
  };
  /// Decodes every bitmap, so it is for an EEPROM whose revision is not shown yet.
  static Contents Read(const Eeprom& memory);

  explicit MemoryPanel(QWidget* parent = nullptr);
  /// Of the EEPROM that is shown; nothing before the first Show.
  std::optional<std::uint64_t> Shown() const { return shown_; }
  void Show(Contents contents);

 private:
  void ShowPicture(int row);

  QProgressBar* bar_;
  QLabel* text_;
  QListWidget* list_;
  QLabel* picture_;
  std::optional<std::uint64_t> shown_;
  std::vector<std::pair<int, PixelMap>> bitmaps_;
};

}  // namespace kelvo::sim
