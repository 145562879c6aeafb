// Whatever text is read as a project is written and read again as the same.

#include <cstdint>
#include <cstdlib>

#include "project/project_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvo;
  const ReadResult first = ReadProject({reinterpret_cast<const char*>(data), size});
  if (const auto* const fault = std::get_if<ProjectFault>(&first)) {
    if (fault->line == 0 || fault->reason.empty()) std::abort();
    return 0;
  }
  const auto text = ProjectText(std::get<Project>(first));
  const ReadResult second = ReadProject(*text);
  const auto* const again = std::get_if<Project>(&second);
  if (again == nullptr || ProjectText(*again) != text) std::abort();
  return 0;
}
