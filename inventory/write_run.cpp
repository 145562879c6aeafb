#include "inventory/write_run.h"

#include <algorithm>

#include "link/addresses.h"
#include "link/commands.h"

namespace kelvo {

std::string JobText(const WriteJob& job) {
  switch (job.state) {
    case JobState::None:
      return job.why;
    case JobState::Waiting:
      return "wartet";
    case JobState::Writing:
      return "schreibt …";
    case JobState::Open:
      return "offen";
    case JobState::Over:
      break;
  }
  return ResultText(job.result);
}

std::string JobSummary(const std::vector<WriteJob>& jobs) {
  const auto count = [&jobs](auto is) {
    return std::to_string(std::count_if(jobs.begin(), jobs.end(), is));
  };
  const auto ended = [&count](WriteVerdict verdict) {
    return count([verdict](const WriteJob& job) {
      return job.state == JobState::Over && job.result.verdict == verdict;
    });
  };
  std::string text = ended(WriteVerdict::Proven) + " geprüft, " +
                     ended(WriteVerdict::AcknowledgedOnly) + " bestätigt ohne Prüfsumme, " +
                     count([](const WriteJob& job) { return job.Failed(); }) + " fehlgeschlagen";
  const std::string open = count([](const WriteJob& job) { return job.state == JobState::Open; });
  if (open != "0") text += ", " + open + " offen";
  return text + ".";
}

void WriteRun::Run(std::vector<WriteJob>& jobs, std::optional<int> selectAfter,
                   const Listener& listener) {
  stopping_ = false;
  ProvenWrite write(exchange_, loop_);
  const auto change = [&](std::size_t index, JobState state) {
    jobs[index].state = state;
    listener(index);
  };
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    if (jobs[i].ticked) change(i, JobState::Waiting);
  }
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    WriteJob& job = jobs[i];
    if (!job.ticked) continue;
    loop_.ProcessPending();  // a wish to stop
    if (stopping_ || !exchange_.Alive()) break;
    change(i, JobState::Writing);
    job.result = write.Write(job.address, job.canSum, job.order.item, job.order.frame);
    job.ticked = !job.result.Done();
    change(i, JobState::Over);
  }
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    if (jobs[i].state == JobState::Waiting) change(i, JobState::Open);
  }
  if (exchange_.Alive()) {
    exchange_.SendString(SelectAddress(selectAfter.value_or(kClosingAddress)));
  }
}

}  // namespace kelvo
