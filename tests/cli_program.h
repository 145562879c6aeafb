#pragma once

#include <nlohmann/json.hpp>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cli/run.h"
#include "tests/fakes/bus_world.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo::testing_world {

inline bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// kelvo-cli at a line of simulated Terminals, in virtual time; each run is a program of its own on
/// the same data folder.
class CliProgram {
 public:
  CliProgram() {
    folder.AddDatabase();
    const auto hear = world.port.onCharacter;
    world.port.onCharacter = [this, hear](char character) {
      hear(character);
      if (--left_ == 0) end_();
    };
  }

  cli::Status Run(std::vector<std::string> arguments) {
    std::ostringstream written;
    std::ostringstream said;
    if (outFails) written.setstate(std::ios::badbit);
    const cli::Status status =
        cli::Run(arguments, {.com1 = world.com1,
                             .loop = world.loop,
                             .tmrTimeout = world.tmrTimeout,
                             .tmrRS485 = world.tmrRS485,
                             .out = written,
                             .err = said,
                             .progressWidth = progressWidth,
                             .program = KELVO_PROGRAM_DIR,
                             .data = folder.Path(),
                             .onInterrupt = [this](auto handler) { interrupt = handler; }});
    out = written.str();
    err = said.str();
    return status;
  }
  nlohmann::json Rows() const { return nlohmann::json::parse(out); }

  /// Happens when so many characters more have gone out.
  void After(int characters, std::function<void()> end) {
    left_ = characters;
    end_ = std::move(end);
  }
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder.Path(name), std::ios::binary) << bytes;
  }

  testing_world::BusWorld world;
  TemporaryFolder folder;
  int progressWidth = 0;
  bool outFails = false;  ///< the disc behind the standard output is full
  std::function<void()> interrupt;
  std::string out;  ///< of the last run
  std::string err;

 private:
  int left_ = 0;
  std::function<void()> end_;
};

}  // namespace kelvo::testing_world
