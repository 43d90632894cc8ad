#include "library_desk.h"

#include <sys/eventfd.h>

#include <utility>

namespace kiohost {
namespace {

void Signal(const FileDescriptor& descriptor) { eventfd_write(descriptor.get(), 1); }

void Quiet(const FileDescriptor& descriptor) {
  eventfd_t count = 0;
  eventfd_read(descriptor.get(), &count);
}

}  // namespace

LibraryDesk::LibraryDesk(const LibraryDesk* bell)
    : bell_(bell),
      work_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      news_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void LibraryDesk::Put(Job job) {
  const std::lock_guard lock(mutex_);
  job_ = std::move(job);
  Ring();
}

bool LibraryDesk::TakeBackJob() {
  const std::lock_guard lock(mutex_);
  return std::exchange(job_, std::nullopt).has_value();
}

void LibraryDesk::PutAfterReply(AfterReply after_reply) {
  const std::lock_guard lock(mutex_);
  after_reply_ = std::move(after_reply);
  Ring();
}

LibraryDesk::News LibraryDesk::TakeNews() {
  const std::lock_guard lock(mutex_);
  Quiet(news_);
  return std::exchange(told_, {});
}

std::optional<LibraryDesk::Job> LibraryDesk::TakeJob() {
  const std::lock_guard lock(mutex_);
  Quiet(work_);
  return std::exchange(job_, std::nullopt);
}

std::optional<AfterReply> LibraryDesk::TakeAfterReply() {
  const std::lock_guard lock(mutex_);
  return std::exchange(after_reply_, std::nullopt);
}

void LibraryDesk::TellJobDone() { Tell(&News::job_done); }
void LibraryDesk::TellTurnOver() { Tell(&News::turn_over); }
void LibraryDesk::TellPublished() { Tell(&News::published); }
void LibraryDesk::TellStop() { Tell(&News::stop); }
void LibraryDesk::TellEvents() { Signal(news_); }

void LibraryDesk::Ring() const {
  Signal(work_);
  if (bell_ != nullptr) {
    Signal(bell_->work_);
  }
}

void LibraryDesk::Tell(bool News::*what) {
  const std::lock_guard lock(mutex_);
  told_.*what = true;
  Signal(news_);
}

void LibraryDesk::ForgetJob() {
  const std::lock_guard lock(mutex_);
  job_.reset();
  told_ = {};
  Quiet(news_);
}

}  // namespace kiohost
