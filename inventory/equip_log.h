#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/equip_progress.h"
#include "inventory/journal_file.h"

// A run on the disc, so that it can go on after the program or the line has died: a head that says
// what is to be done, which is whole before anything is sent, then one line for each entry. A line
// that was torn costs only itself.

namespace kelvo {

/// The file of a run, which belongs to one program.
class EquipLog {
 public:
  /// Begins the file of this job in place of any other; nothing when it cannot be written, and the
  /// other one is there then. What was none is renamed.
  static std::optional<EquipLog> Create(const std::string& path, const EquipJob& job);
  /// What is there; nothing when no run was begun in it.
  static std::optional<EquipLog> Open(const std::string& path);

  const EquipJob& Job() const { return job_; }
  const EquipProgress& Progress() const { return progress_; }

  /// Takes what has happened; false when it is not on the disc.
  bool Add(const EquipEntry& entry);
  /// The file goes, and the run with it. Why not, UTF-8, when it stays.
  std::optional<std::string> Discard() const;

 private:
  EquipLog(std::string path, EquipJob job)
      : path_(std::move(path)),
        file_(path_, FileKind::Own),
        job_(std::move(job)),
        progress_(job_) {}

  std::string path_;
  JournalFile file_;
  EquipJob job_;
  EquipProgress progress_;
};

// The lines of the file, without their ends and seals.
std::vector<std::string> JobLines(const EquipJob& job);
/// Nothing when these are not the lines of a job.
std::optional<EquipJob> ReadJobLines(const std::vector<std::string_view>& lines);
std::string EntryLine(const EquipEntry& entry);
std::optional<EquipEntry> ReadEntryLine(std::string_view line);

}  // namespace kelvo
