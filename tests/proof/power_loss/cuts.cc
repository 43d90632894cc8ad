#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "disk.h"
#include "recording.h"
#include "report.h"
#include "session.h"

using kiohost::Store;

namespace {

constexpr size_t kShown = 300;  // characters of a text in a message

// Looks at what a loss of power has left.
class Inspector {
 public:
  explicit Inspector(const Recording* recording) : recording_(recording) {}

  // The store is one of those from before the session's step `first` to after its step `last`, and
  // can be written. Returns what is wrong.
  std::string Look(Files files, size_t first, size_t last) {
    Disk& disk = Disk::Get();
    disk.files = std::move(files);
    Store store;
    const kiohost::Status status = store.Open(kStoreFile, Store::Mode::kCreate);
    if (!status.ok()) {
      return status.reason();
    }
    const std::string content = ContentOf(store.Read());
    size_t found = first;
    while (found <= last + 1 && content != recording_->contents[found]) {
      ++found;
    }
    if (found > last + 1) {
      return "the store holds something else:\n" + content.substr(0, kShown);
    }
    before_ += found <= last ? 1 : 0;
    after_ += found == last + 1 ? 1 : 0;
    if (std::string said = IntegrityOf(kStoreFile); said != "ok") {
      return said;
    }
    if (!store.Set("/proof/written", "1") || store.Get("/proof/written") != "1") {
      return "it cannot be written";
    }
    return {};
  }

  long before() const { return before_; }
  long after() const { return after_; }

 private:
  const Recording* recording_;
  long before_ = 0;  // held what it did before the step that was cut
  long after_ = 0;
};

using Piece = Remains::Piece;

// The choices of open steps that are tried at one moment: all that came before a step, with each
// piece of that step; all but one; a single one.
std::vector<std::vector<Piece>> Choices(const Remains& remains) {
  const auto& open = remains.open_steps();
  const size_t count = open.size();
  std::vector<std::vector<Piece>> choices = {std::vector<Piece>(count, Piece::kNone)};
  for (size_t i = 0; i < count; ++i) {
    for (const Piece piece :
         {Piece::kAll, Piece::kFirstHalf, Piece::kSecondHalf, Piece::kFirstSector}) {
      if (Remains::HasPiece(*open[i].second, piece)) {
        std::vector<Piece> prefix(count, Piece::kNone);
        std::fill(prefix.begin(), prefix.begin() + static_cast<std::ptrdiff_t>(i), Piece::kAll);
        prefix[i] = piece;
        choices.push_back(std::move(prefix));
        std::vector<Piece> all(count, Piece::kAll);
        all[i] = piece == Piece::kAll ? Piece::kNone : piece;
        choices.push_back(std::move(all));
      }
    }
    std::vector<Piece> single(count, Piece::kNone);
    single[i] = Piece::kAll;
    choices.push_back(std::move(single));
  }
  return choices;
}

// The name of a state of the disk: what lasts, and the pieces of the rest.
std::string NameOf(const Remains& remains, const std::vector<Piece>& pieces) {
  std::string name = std::to_string(remains.version());
  for (size_t i = 0; i < pieces.size(); ++i) {
    if (pieces[i] != Piece::kNone) {
      name += " " + std::to_string(remains.open_steps()[i].first) +
              "-abcd"[static_cast<size_t>(pieces[i])];
    }
  }
  return name;
}

// Where in the session a step of the disk is, and the last step before it that has waited.
struct Place {
  size_t step = 0;
  size_t floor = 0;
};

Place PlaceOf(const Recording& recording, size_t disk_step) {
  Place place;
  while (place.step + 1 < recording.ends.size() && recording.ends[place.step] <= disk_step) {
    place.floor = recording.waits[place.step] ? place.step + 1 : place.floor;
    ++place.step;
  }
  return place;
}

struct Losses {
  long syncs = 0;
  long cuts = 0;
  long damaged = 0;
};

// A loss of power before step `i` of the disk, behind the lost sync `k`.
void CutBehindLostSync(const Recording& recording, size_t k, size_t i, const Remains& remains,
                       Inspector* inspector, Losses* losses) {
  const size_t count = remains.open_steps().size();
  for (size_t j = 0; j <= count; ++j) {
    std::vector<Piece> prefix(count, Piece::kNone);
    std::fill(prefix.begin(), prefix.begin() + static_cast<std::ptrdiff_t>(j), Piece::kAll);
    ++losses->cuts;
    const std::string wrong = inspector->Look(remains.With(prefix), 0, PlaceOf(recording, i).step);
    losses->damaged += wrong.empty() ? 0 : 1;
    // The log may be reused as soon as its pages are in the file. Nothing can make up for a disk
    // that does not keep what it said it had.
    if (!wrong.empty() && recording.steps[k].file != kStoreFile) {
      Say("a lost sync of the log, " + wrong);
    }
  }
}

// A lost sync says that all is well and does nothing. The power is lost before each step up to the
// next sync of the same file.
void LoseSync(const Recording& recording, size_t k, Inspector* inspector, Losses* losses) {
  ++losses->syncs;
  const std::vector<DiskStep>& steps = recording.steps;
  Remains remains;
  bool is_kept = false;
  for (size_t i = 0; i <= steps.size() && !is_kept; ++i) {
    if (i > k) {
      CutBehindLostSync(recording, k, i, remains, inspector, losses);
    }
    if (i < steps.size()) {
      remains.Take(steps[i], static_cast<int>(i), i == k);
      is_kept = i > k && steps[i].kind == DiskStep::Kind::kSync && steps[i].file == steps[k].file;
    }
  }
}

}  // namespace

void CutEverywhere(const Recording& recording) {
  Inspector inspector(&recording);
  Remains remains;
  std::set<std::string> seen;
  long cuts = 0;
  for (size_t i = 0; i <= recording.steps.size(); ++i) {
    const Place place = PlaceOf(recording, i);
    for (const std::vector<Piece>& pieces : Choices(remains)) {
      ++cuts;
      // The same files at a later step of the session are allowed to hold less.
      if (!seen.insert(NameOf(remains, pieces) + " " + std::to_string(place.step)).second) {
        continue;
      }
      const std::string wrong = inspector.Look(remains.With(pieces), place.floor, place.step);
      if (!wrong.empty()) {
        Say("loss of power in \"" + recording.names[place.step] + "\" before step " +
            std::to_string(i) + " of the disk, " + NameOf(remains, pieces) + ": " + wrong);
      }
    }
    if (i < recording.steps.size()) {
      remains.Take(recording.steps[i], static_cast<int>(i));
    }
  }
  Figure("store: steps that change the disk or wait for it",
         static_cast<long>(recording.steps.size()));
  Figure("store: losses of power, with each choice of what was not synced", cuts);
  Figure("store: states of the disk that these leave", static_cast<long>(seen.size()));
  Figure("store: of these with the store from before what was cut", inspector.before());
  Figure("store: of these with the store from after it", inspector.after());
}

void LoseEachSync(const Recording& recording) {
  Inspector inspector(&recording);
  Losses losses;
  for (size_t k = 0; k < recording.steps.size(); ++k) {
    if (recording.steps[k].kind == DiskStep::Kind::kSync) {
      LoseSync(recording, k, &inspector, &losses);
    }
  }
  Figure("store: syncs lost, one at a time", losses.syncs);
  Figure("store: losses of power behind a lost sync", losses.cuts);
  Figure("store: of these with a damaged store, all behind a lost sync of the database file",
         losses.damaged);
}
