#include "cli/project_content.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>
#include <variant>

#include "base/wire_text.h"
#include "graphics/create_pic.h"
#include "project/project_text.h"

namespace kelvo::cli {
namespace {

constexpr std::string_view kContentColumn = "wert";

const std::string* TextOf(const ProjectRecord& record) {
  const auto fields = RowOf(record.kind).fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].column == kContentColumn) return std::get_if<std::string>(&record.values[i]);
  }
  return nullptr;
}

bool IsText(ProjectKind kind) {
  return kind == ProjectKind::Macro || kind == ProjectKind::MatrixTable ||
         kind == ProjectKind::AtTable || kind == ProjectKind::Picture;
}

void AddRecord(Contents& contents, const std::string& path, const ProjectRecord& record) {
  const std::string* const text = TextOf(record);
  if (!IsText(record.kind) || text == nullptr) return;
  Content content{.place = path + ": " + RecordText(record)};
  const auto wire = WireText(*text);
  if (!wire) {
    contents.faults.push_back(
        {content.place, "Der Inhalt hat Zeichen, die nicht auf die Leitung können."});
    return;
  }
  constexpr std::int64_t kMost = std::numeric_limits<int>::max();
  const std::int64_t number = std::clamp<std::int64_t>(NumberOf(record).value_or(-1), -1, kMost);
  content.record = {0, RowOf(record.kind).typ, NameOf(record), static_cast<int>(number), *wire};
  content.drawing = record.kind == ProjectKind::Picture;
  content.leftOut = content.drawing && number < 0;
  content.ofProject = true;
  contents.all.push_back(std::move(content));
}

}  // namespace

bool LooksLikeProject(const std::string& path, const std::string& bytes) {
  constexpr std::size_t kHead = 200;
  return path.ends_with(kProjectSuffix) ||
         (bytes.starts_with('{') && bytes.substr(0, kHead).find("\"kelvo\"") != std::string::npos);
}

Project ProjectFrom(const std::string& path, const std::string& bytes) {
  ReadResult read = ReadProject(bytes);
  if (const auto* fault = std::get_if<ProjectFault>(&read)) {
    throw std::runtime_error(path + ": " + FaultText(*fault));
  }
  return std::get<Project>(std::move(read));
}

void AddProject(Contents& contents, const std::string& path, const Project& project,
                TerminalTraits traits) {
  for (const ProjectRecord& record : project.records) AddRecord(contents, path, record);
  for (const ProjectDrawing& drawing : project.drawings) {
    Content content{.place = path + ": Zeichnung „" + drawing.name + "“"};
    const Translation pic = CreatePic(drawing.drawing, traits);
    for (const std::string& message : pic.messages) {
      contents.faults.push_back({content.place, message});
    }
    content.record = {0, "Grafik", drawing.name, -1, pic.text};
    content.drawing = true;
    content.leftOut = true;
    content.ofProject = true;
    contents.all.push_back(std::move(content));
  }
}

}  // namespace kelvo::cli
