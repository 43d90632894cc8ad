#include "apply_log.h"

#include <string_view>

#include "random_id.h"
#include "uptime.h"

namespace kiohost {
namespace {

constexpr std::string_view kId = "apply id";
constexpr std::string_view kOutcome = "apply outcome";
constexpr std::string_view kUptime = "apply uptime";

}  // namespace

const char* OutcomeWord(ApplyOutcome outcome) {
  switch (outcome) {
    case ApplyOutcome::kInForce:
      return "in-force";
    case ApplyOutcome::kFailed:
      return "failed";
    case ApplyOutcome::kGoingBack:
      return "going-back";
    case ApplyOutcome::kRolledBack:
      return "rolled-back";
    case ApplyOutcome::kApplied:
      break;
  }
  return "applied";
}

std::optional<Apply> ApplyLog::Last() {
  const std::optional<int64_t> id = store_->Number(kId);
  if (!id) {
    return std::nullopt;
  }
  return Apply{IdText(*id), static_cast<ApplyOutcome>(store_->Number(kOutcome).value_or(0)),
               static_cast<long>(store_->Number(kUptime).value_or(0))};
}

std::string ApplyLog::NoteApply() {
  const int64_t id = RandomNumber();
  store_->SetNumber(kId, id);
  Note(ApplyOutcome::kApplied);
  return IdText(id);
}

std::string ApplyLog::NoteUnchangedApply() {
  std::string id;
  const bool noted = store_->WriteWithoutWait([this, &id] { id = NoteApply(); });
  return noted ? id : std::string();
}

void ApplyLog::NoteCommit(unsigned int failed, unsigned int due) {
  const std::optional<Apply> last = Last();
  if (!last) {
    return;
  }
  const bool back =
      last->outcome == ApplyOutcome::kGoingBack || last->outcome == ApplyOutcome::kRolledBack;
  const ApplyOutcome done = back ? ApplyOutcome::kRolledBack : ApplyOutcome::kInForce;
  const ApplyOutcome undone = back          ? ApplyOutcome::kGoingBack
                              : failed != 0 ? ApplyOutcome::kFailed
                                            : ApplyOutcome::kApplied;
  const ApplyOutcome outcome = due == 0 ? done : undone;
  if (outcome != last->outcome) {
    Note(outcome);
  }
}

void ApplyLog::Note(ApplyOutcome outcome) {
  store_->SetNumber(kOutcome, static_cast<int64_t>(outcome));
  store_->SetNumber(kUptime, UptimeSeconds());
}

}  // namespace kiohost
