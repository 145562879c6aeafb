#pragma once

#include <random>
#include <string>

#include "base/wire_text.h"
#include "project/project.h"
#include "tests/random_macros.h"

namespace kelvo {

/// Records that only chance would make; the same for the same start value.
class RandomProject {
 public:
  explicit RandomProject(unsigned start) : random_(start), macros_(start) {}

  /// Of every kind that may have several.
  Project Next(std::size_t records) {
    static constexpr ProjectKind kKinds[] = {
        ProjectKind::Macro,   ProjectKind::Macro,  ProjectKind::MatrixTable, ProjectKind::AtTable,
        ProjectKind::Picture, ProjectKind::Symbol, ProjectKind::Other,       ProjectKind::Terminal,
        ProjectKind::Line,    ProjectKind::Port};
    Project project;
    for (std::size_t i = 0; i < records; ++i) {
      project.records.push_back(Record(kKinds[i % std::size(kKinds)]));
    }
    for (const ProjectRecord& record : project.records) project.kinds.insert(record.kind);
    return project;
  }
  ProjectRecord Record(ProjectKind kind) {
    ProjectRecord record{kind, {}};
    for (const ProjectField& field : RowOf(kind).fields) {
      record.values.push_back(Number(0, 9) == 0 ? Value() : ValueOf(field.form));
    }
    if (kind == ProjectKind::Other) record.values[2] = "Art " + AnyText(4);
    return record;
  }
  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  /// Of all 256 characters, UTF-8.
  std::string AnyText(int longest) {
    std::string wire;
    for (int left = Number(0, longest); left > 0; --left) wire += static_cast<char>(Number(0, 255));
    return ScreenText(wire);
  }

 private:
  Value ValueOf(FieldForm form) {
    switch (form) {
      case FieldForm::Whole:
        return std::int64_t{Number(-1, 400)};
      case FieldForm::Real:
        return Number(0, 400) / 16.0;
      case FieldForm::YesNo:
        return std::int64_t{Number(0, 2)};
      case FieldForm::Commands:
        return Number(0, 1) == 0 ? AnyText(90) : ScreenText(macros_.Strokes(15));
      case FieldForm::Text:
        break;
    }
    return AnyText(12);
  }

  std::mt19937 random_;
  RandomMacros macros_;
};

}  // namespace kelvo
