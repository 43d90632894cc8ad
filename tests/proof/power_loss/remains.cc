#include <utility>

#include "disk.h"

namespace {

constexpr size_t kSector = 512;

bool IsOfDirectory(const DiskStep& step) {
  return step.kind == DiskStep::Kind::kCreate || step.kind == DiskStep::Kind::kDelete;
}

// Its first sync comes with one of the directory.
bool IsLog(const std::string& file) { return file.ends_with("-wal") || file.ends_with("-journal"); }

}  // namespace

bool Remains::HasPiece(const DiskStep& step, Piece piece) {
  if (piece == Piece::kNone || piece == Piece::kAll) {
    return true;
  }
  return step.kind == DiskStep::Kind::kWrite && step.data.size() > 1 &&
         (piece != Piece::kFirstSector || step.data.size() > 2 * kSector);
}

void Remains::Apply(const DiskStep& step, Piece piece, Files* files, std::set<std::string>* names) {
  switch (step.kind) {
    case DiskStep::Kind::kCreate:
      names->insert(step.file);
      (*files)[step.file].clear();
      break;
    case DiskStep::Kind::kDelete:
      names->erase(step.file);
      files->erase(step.file);
      break;
    case DiskStep::Kind::kTruncate:
      (*files)[step.file].resize(step.at);
      break;
    case DiskStep::Kind::kWrite: {
      const size_t half = step.data.size() / 2;
      const size_t begin = piece == Piece::kSecondHalf ? half : 0;
      const size_t end = piece == Piece::kFirstHalf     ? half
                         : piece == Piece::kFirstSector ? kSector
                                                        : step.data.size();
      std::string& file = (*files)[step.file];
      if (file.size() < step.at + end) {
        file.resize(step.at + end);
      }
      file.replace(step.at + begin, end - begin, step.data, begin, end - begin);
      break;
    }
    case DiskStep::Kind::kSync:
      break;
  }
}

void Remains::Take(const DiskStep& step, int number, bool sync_is_lost) {
  if (step.kind != DiskStep::Kind::kSync) {
    open_.emplace_back(number, &step);
    return;
  }
  if (sync_is_lost) {
    return;
  }
  // A file that is created and not known to the directory keeps its content for the time when it
  // is.
  std::erase_if(open_, [this, &step](const auto& open) {
    const DiskStep& other = *open.second;
    const bool lasts = IsOfDirectory(other) ? IsLog(step.file) : other.file == step.file;
    if (lasts) {
      Apply(other, Piece::kAll, &durable_, &names_);
    }
    return lasts;
  });
  ++version_;
}

Files Remains::With(const std::vector<Piece>& pieces) const {
  Files files = durable_;
  std::set<std::string> names = names_;
  for (size_t i = 0; i < open_.size(); ++i) {
    if (pieces[i] != Piece::kNone) {
      Apply(*open_[i].second, pieces[i], &files, &names);
    }
  }
  std::erase_if(files, [&names](const auto& file) { return !names.contains(file.first); });
  return files;
}
