#pragma once

#include <QBuffer>
#include <QPainter>
#include <memory>
#include <optional>
#include <string>

#include "sheet_page/sheet_painter.h"

class QPagedPaintDevice;
class QPrinter;

namespace kelvo {

/// Brings a sheet to a printer or into a file, a page with each step.
class SheetOutput {
 public:
  /// Into a file; it is written with End(). The sheet must outlive it.
  SheetOutput(const SheetPages& sheet, std::string path);
  /// To a printer, those of its pages that the printer is set to.
  SheetOutput(const SheetPages& sheet, std::unique_ptr<QPrinter> printer);
  ~SheetOutput();

  /// False when all pages are drawn, or none can be.
  bool Step();
  std::size_t Pages() const { return end_ - first_; }
  std::size_t Done() const { return next_ - first_; }
  /// Why it has failed, UTF-8; empty for no reason that is known. Nothing when all is well.
  std::optional<std::string> End();

 private:
  const SheetPages& sheet_;
  const std::string path_;  // empty for a printer
  QBuffer file_;
  std::unique_ptr<QPagedPaintDevice> device_;
  QPainter painter_;
  std::size_t first_ = 0;
  std::size_t end_;
  std::size_t next_ = 0;
  bool failed_ = false;
};

}  // namespace kelvo
