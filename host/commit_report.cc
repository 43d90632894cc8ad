#include "commit_report.h"

#include <optional>

namespace kiohost {

void CommitReport::Finish() {
  exchange_->FinishCommit(mask_, actions_.Finish());
  const std::optional<Apply> last = exchange_->applies()->Last();
  events_->Add({EventKind::kCommitted,
                {{"apply", last ? Json(last->id) : Json(nullptr)},
                 {"outcome", last ? Json(OutcomeWord(last->outcome)) : Json(nullptr)}}});
}

}  // namespace kiohost
