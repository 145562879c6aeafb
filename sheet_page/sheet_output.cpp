#include "sheet_page/sheet_output.h"

#include <QPdfWriter>
#include <QPrinter>
#include <algorithm>

#include "widgets/files.h"

namespace kelvo {
namespace {

constexpr int kDotsPerInch = 600;

}  // namespace

SheetOutput::SheetOutput(const SheetPages& sheet, std::string path)
    : sheet_(sheet), path_(std::move(path)), end_(sheet.pages.size()) {
  file_.open(QIODevice::WriteOnly);
  auto writer = std::make_unique<QPdfWriter>(&file_);
  writer->setResolution(kDotsPerInch);
  writer->setPageSize(QPageSize(QPageSize::A4));
  writer->setPageMargins({});
  writer->setTitle(sheet.title);
  writer->setCreator(QStringLiteral("kelvo"));
  device_ = std::move(writer);
}

SheetOutput::SheetOutput(const SheetPages& sheet, std::unique_ptr<QPrinter> printer)
    : sheet_(sheet), end_(sheet.pages.size()) {
  if (printer->fromPage() > 0) {
    first_ = std::min(end_, static_cast<std::size_t>(printer->fromPage()) - 1);
    end_ = std::clamp(static_cast<std::size_t>(std::max(printer->toPage(), 1)), first_, end_);
  }
  next_ = first_;
  printer->setFullPage(true);
  device_ = std::move(printer);
}

// What is not complete is not printed on.
SheetOutput::~SheetOutput() {
  auto* const printer = dynamic_cast<QPrinter*>(device_.get());
  if (painter_.isActive() && printer != nullptr) printer->abort();
}

bool SheetOutput::Step() {
  if (failed_ || next_ >= end_) return false;
  failed_ = next_ == first_ ? !painter_.begin(device_.get()) : !device_->newPage();
  if (failed_) return false;
  painter_.save();
  const double scale = device_->logicalDpiX() / kUnitsPerInch;
  painter_.scale(scale, scale);
  PaintSheetPage(painter_, sheet_, next_);
  painter_.restore();
  return ++next_ < end_;
}

std::optional<std::string> SheetOutput::End() {
  if (painter_.isActive()) failed_ = !painter_.end() || failed_;
  if (failed_) return std::string();
  return path_.empty() ? std::nullopt : WriteFile(path_, file_.data().toStdString());
}

}  // namespace kelvo
