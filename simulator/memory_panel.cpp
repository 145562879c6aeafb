#include "simulator/memory_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "simulator/bitmap.h"
#include "simulator/picture.h"

namespace kelvo::sim {
namespace {

constexpr QSize kPictureRoom(120, 90);
constexpr int kMostScale = 3;

QString Listed(const QString& name, const QStringList& numbers) {
  return numbers.isEmpty() ? QString() : name + QStringLiteral(" ") + numbers.join(u", ");
}

QString Described(const Eeprom& memory) {
  QStringList numbers[4];
  for (const auto& record : memory.Records()) {
    numbers[static_cast<int>(record.first.first) - 1] += QString::number(record.first.second);
  }
  QStringList parts;
  if (!numbers[0].isEmpty()) parts += QObject::tr("Konfiguration");
  parts += Listed(QObject::tr("Makro"), numbers[1]);
  parts += Listed(QObject::tr("Tastaturtabelle"), numbers[2]);
  parts += Listed(QObject::tr("Bitmap"), numbers[3]);
  parts.removeAll(QString());
  return parts.isEmpty() ? QObject::tr("leer") : parts.join(u"; ");
}

QString Caption(const std::pair<int, PixelMap>& bitmap) {
  return QObject::tr("%1: %2 x %3")
      .arg(bitmap.first)
      .arg(bitmap.second.Width())
      .arg(bitmap.second.Height());
}

// As large as there is room for; a larger bitmap as a whole, made smaller.
QPixmap Fitting(const PixelMap& bitmap) {
  const QSize one = LcdImageSize(bitmap, 1);
  const int fits =
      std::min(kPictureRoom.width() / one.width(), kPictureRoom.height() / one.height());
  const QImage image = LcdImage(bitmap, std::clamp(fits, 1, kMostScale), true);
  if (fits >= 1) return QPixmap::fromImage(image);
  return QPixmap::fromImage(
      image.scaled(kPictureRoom, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

}  // namespace

MemoryPanel::Contents MemoryPanel::Read(const Eeprom& memory) {
  Contents contents{memory.Revision(), memory.Capacity(), memory.Free(), Described(memory), {}};
  for (const auto& [key, bytes] : memory.Records()) {
    if (key.first == Eeprom::Kind::Bitmap) {
      contents.bitmaps.emplace_back(key.second, UnpackBitmap(bytes));
    }
  }
  return contents;
}

MemoryPanel::MemoryPanel(QWidget* parent)
    : QGroupBox(tr("EEPROM"), parent),
      bar_(new QProgressBar),
      text_(new QLabel),
      list_(new QListWidget),
      picture_(new QLabel) {
  bar_->setObjectName(QStringLiteral("barEeprom"));
  text_->setObjectName(QStringLiteral("lblEeprom"));
  text_->setWordWrap(true);
  list_->setObjectName(QStringLiteral("lstBitmaps"));
  list_->setAccessibleName(tr("Bitmaps im EEPROM"));
  list_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  picture_->setObjectName(QStringLiteral("picBitmap"));
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setFixedSize(kPictureRoom);
  auto* column = new QVBoxLayout(this);
  column->addWidget(bar_);
  column->addWidget(text_);
  auto* row = new QHBoxLayout;
  row->addWidget(list_, 1);
  row->addWidget(picture_);
  column->addLayout(row);
  connect(list_, &QListWidget::currentRowChanged, this, &MemoryPanel::ShowPicture);
}

void MemoryPanel::Show(Contents contents) {
  shown_ = contents.revision;
  bar_->setRange(0, std::max(1, contents.capacity));
  bar_->setValue(contents.capacity - contents.free);
  bar_->setFormat(
      tr("%1 von %2 Byte belegt").arg(contents.capacity - contents.free).arg(contents.capacity));
  text_->setText(contents.text);
  const int row = std::max(0, list_->currentRow());
  const int number =
      row < static_cast<int>(bitmaps_.size()) ? bitmaps_[static_cast<std::size_t>(row)].first : -1;
  bitmaps_ = std::move(contents.bitmaps);
  const QSignalBlocker quiet(list_);
  list_->clear();
  int chosen = 0;
  for (const auto& bitmap : bitmaps_) {
    if (bitmap.first == number) chosen = list_->count();
    list_->addItem(Caption(bitmap));
  }
  list_->setVisible(!bitmaps_.empty());
  picture_->setVisible(!bitmaps_.empty());
  list_->setCurrentRow(bitmaps_.empty() ? -1 : chosen);
  ShowPicture(list_->currentRow());
}

void MemoryPanel::ShowPicture(int row) {
  if (row < 0) return picture_->clear();
  const auto& bitmap = bitmaps_[static_cast<std::size_t>(row)];
  picture_->setPixmap(Fitting(bitmap.second));
  picture_->setAccessibleName(tr("Bitmap %1").arg(Caption(bitmap)));
}

}  // namespace kelvo::sim
