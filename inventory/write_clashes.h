#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "inventory/write_run.h"

namespace kelvo {

/// Which jobs would overwrite one another: those with the same place in the same Terminal.
class WriteClashes {
 public:
  WriteClashes() = default;
  explicit WriteClashes(const std::vector<WriteJob>& jobs);

  /// All jobs with this one's place, itself among them, in their order.
  const std::vector<std::size_t>& With(const WriteJob& job) const;
  /// Of each place only the first job that is ticked stays so.
  void KeepOne(std::vector<WriteJob>& jobs) const;
  /// In German with what a job does not go together; empty where nothing is in its way. UTF-8
  std::string Text(const std::vector<WriteJob>& jobs, std::size_t index) const;

 private:
  std::map<std::pair<int, ItemKey>, std::vector<std::size_t>> places_;
};

}  // namespace kelvo
