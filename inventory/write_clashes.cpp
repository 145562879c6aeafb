#include "inventory/write_clashes.h"

#include <algorithm>

namespace kelvo {
namespace {

// The tables of both keyboards share their places.
std::pair<int, ItemKey> PlaceOf(const WriteJob& job) {
  ItemKey key = job.order.item.key;
  if (IsTable(key.kind)) key.kind = ItemKind::MatrixTable;
  return {job.address, key};
}

}  // namespace

WriteClashes::WriteClashes(const std::vector<WriteJob>& jobs) {
  for (std::size_t i = 0; i < jobs.size(); ++i) places_[PlaceOf(jobs[i])].push_back(i);
}

const std::vector<std::size_t>& WriteClashes::With(const WriteJob& job) const {
  return places_.at(PlaceOf(job));
}

void WriteClashes::KeepOne(std::vector<WriteJob>& jobs) const {
  for (const auto& [place, same] : places_) {
    const auto first = std::find_if(same.begin(), same.end(),
                                    [&jobs](std::size_t index) { return jobs[index].ticked; });
    for (const std::size_t index : same)
      jobs[index].ticked = first != same.end() && index == *first;
  }
}

std::string WriteClashes::Text(const std::vector<WriteJob>& jobs, std::size_t index) const {
  const std::vector<std::size_t>& same = With(jobs[index]);
  if (same.size() < 2) return {};
  const Item& other = jobs[same.front() == index ? same[1] : same.front()].order.item;
  if (other == jobs[index].order.item) return "die Adresse steht mehrmals in der Liste";
  const std::size_t more = same.size() - 2;
  return "geht nicht zusammen mit " + ItemText(other.key) +
         (other.name.empty() ? "" : " „" + other.name + "“") +
         (more > 0 ? " und " + std::to_string(more) + " weiteren" : "");
}

}  // namespace kelvo
