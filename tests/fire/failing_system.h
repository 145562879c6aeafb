#pragma once

#include <string>

namespace kelvo::testing_world {

/// What the program asks of the system for the files below one folder: from now on, as long as this
/// lives, the call of that number (from 1) fails, and only that one. Openings for reading alone do
/// not count.
class FailingSystem {
 public:
  FailingSystem(const std::string& folder, int call, int error);
  ~FailingSystem();
  FailingSystem(const FailingSystem&) = delete;
  FailingSystem& operator=(const FailingSystem&) = delete;

  /// What has failed: "write kelvo.mdb"; empty when there were not as many calls.
  static const std::string& Failed();
};

}  // namespace kelvo::testing_world
