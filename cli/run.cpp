#include "cli/run.h"

#include <stdexcept>

#include "cli/verbs.h"

namespace kelvo::cli {
namespace {

Status Do(Bench& bench) {
  switch (bench.Asked().verb) {
    case Verb::Check:
      return RunCheck(bench);
    case Verb::Scan:
      return RunScan(bench);
    case Verb::Info:
      return RunInfo(bench);
    case Verb::Write:
      return RunWrite(bench);
    case Verb::Render:
      return RunRender(bench);
    case Verb::Compare:
      return RunCompare(bench);
    case Verb::Export:
      return RunExport(bench);
    case Verb::Import:
      return RunImport(bench);
  }
  return WrongUse;
}

}  // namespace

Status Run(const std::vector<std::string>& arguments, const Outside& outside) {
  const ParsedArguments parsed = ReadArguments(arguments);
  if (!parsed.options) {
    if (parsed.status == AllWell) {
      outside.out << parsed.text << std::flush;
    } else {
      outside.err << "kelvo-cli: " << parsed.text << std::flush;
    }
    return parsed.status;
  }
  const auto say = [&outside](const std::exception& error) {
    outside.err << "kelvo-cli: " << error.what() << "\n" << std::flush;
  };
  try {
    Bench bench(*parsed.options, outside);
    const Status status = Do(bench);
    if (outside.out.flush()) return status;
    throw std::runtime_error("Das Ergebnis konnte nicht ausgegeben werden.");
  } catch (const WrongRequest& error) {
    say(error);
    return WrongUse;
  } catch (const std::exception& error) {
    say(error);
    return SomethingFailed;
  }
}

}  // namespace kelvo::cli
