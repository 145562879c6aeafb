#pragma once

#include <sys/resource.h>

#include <csignal>

namespace kelvo::testing_world {

/// As a full disc: files of this process grow no further, and writing more is an error.
class FullDisc {
 public:
  explicit FullDisc(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit full{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisc() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

}  // namespace kelvo::testing_world
