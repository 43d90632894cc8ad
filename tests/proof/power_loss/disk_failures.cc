#include <sqlite3.h>

#include <array>
#include <string>

#include "disk.h"
#include "recording.h"
#include "report.h"
#include "session.h"

namespace {

constexpr DiskFault kFaults[] = {
    {"cannot open", DiskCall::kOpen, SQLITE_CANTOPEN, DiskFault::Effect::kNothing},
    {"cannot read", DiskCall::kRead, SQLITE_IOERR_READ, DiskFault::Effect::kNothing},
    {"cannot write", DiskCall::kWrite, SQLITE_IOERR_WRITE, DiskFault::Effect::kNothing},
    {"is full", DiskCall::kWrite, SQLITE_FULL, DiskFault::Effect::kNothing},
    {"writes a half", DiskCall::kWrite, SQLITE_IOERR_WRITE, DiskFault::Effect::kHalf},
    {"is full behind a half", DiskCall::kWrite, SQLITE_FULL, DiskFault::Effect::kHalf},
    {"cannot truncate", DiskCall::kTruncate, SQLITE_IOERR_TRUNCATE, DiskFault::Effect::kNothing},
    {"cannot sync", DiskCall::kSync, SQLITE_IOERR_FSYNC, DiskFault::Effect::kNothing},
    {"loses a sync", DiskCall::kSync, SQLITE_OK, DiskFault::Effect::kNothing},
    {"cannot tell a size", DiskCall::kSize, SQLITE_IOERR_FSTAT, DiskFault::Effect::kNothing},
    {"cannot delete", DiskCall::kDelete, SQLITE_IOERR_DELETE, DiskFault::Effect::kNothing},
    {"cannot share memory", DiskCall::kMemory, SQLITE_IOERR_SHMMAP, DiskFault::Effect::kNothing},
    {"has no memory to share", DiskCall::kMemory, SQLITE_NOMEM, DiskFault::Effect::kNothing},
};

// The content without the numbers that differ from run to run.
std::string Comparable(const std::string& content) {
  std::string text;
  for (size_t at = 0; at < content.size();) {
    const size_t end = content.find('\n', at) + 1;
    const std::string line = content.substr(at, end - at);
    const bool is_drawn = line.starts_with("apply id: ") || line.starts_with("apply uptime: ") ||
                          line.starts_with("confirm until: ");
    text += is_drawn ? line.substr(0, line.find(": ")) + "\n" : line;
    at = end;
  }
  return text;
}

// One session in which the call of a number fails.
class FailingSession {
 public:
  FailingSession(const Recording* recording, const DiskFault* fault, int number)
      : recording_(recording), fault_(fault), number_(number) {}

  // Runs it up to the step in which the call fails. Returns false when there is no such call.
  bool Run() {
    Disk& disk = Disk::Get();
    disk.files.clear();
    disk.fails = [this](DiskCall call, const std::string& file) { return Next(call, file); };
    Session session;
    for (; step_ < session.steps().size(); ++step_) {
      is_on_ = true;
      const bool done = session.steps()[step_].run();
      is_on_ = false;
      if (has_failed_) {
        Judge(&session, done);
        disk.fails = nullptr;
        return true;
      }
      if (!done) {
        Complain("an earlier step failed");
        break;
      }
    }
    disk.fails = nullptr;
    return false;
  }

  bool was_told() const { return was_told_; }

 private:
  const DiskFault* Next(DiskCall call, const std::string& file) {
    if (!is_on_ || has_failed_ || call != fault_->call || ++count_ != number_) {
      return nullptr;
    }
    has_failed_ = true;
    file_ = file;
    return fault_;
  }

  void Complain(const std::string& what) const {
    Say("the disk " + std::string(fault_->name) + ", call " + std::to_string(number_) + ", " +
        file_ + " in \"" + recording_->names[step_] + "\": " + what);
  }

  std::string Recorded(size_t step) const { return Comparable(recording_->contents[step]); }

  // The store holds what it did before the step or what it does after it; the latter alone when the
  // step succeeded, and the former alone when it failed and the store was not opened again.
  void Judge(Session* session, bool done) {
    was_told_ = !done;
    const std::string before = Recorded(step_);
    const std::string after = Recorded(step_ + 1);
    if (session->store() != nullptr) {
      const std::string now = Comparable(session->Content());
      const bool is_right =
          done ? now == after || (now == before && !recording_->waits[step_]) : now == before;
      if (!is_right) {
        Complain(std::string(done ? "told of no failure" : "told of a failure") +
                 ", and the store holds " +
                 (now == before  ? "what it did before"
                  : now == after ? "what it should after it"
                                 : "something else"));
      }
      if (!session->store()->Set("/proof/written", "1")) {
        Complain("the store cannot be written any more");
      }
      session->store()->Delete("/proof");
    }
    if (!session->OpenAgain()) {
      Complain("the store cannot be opened again");
      return;
    }
    const std::string now = Comparable(session->Content());
    if (now != before && now != after) {
      Complain("opened again, the store holds something else");
    }
    if (const std::string said = IntegrityOf(kStoreFile); said != "ok") {
      Complain(said);
    }
  }

  const Recording* recording_;
  const DiskFault* fault_;
  int number_;
  size_t step_ = 0;
  int count_ = 0;
  bool is_on_ = false;
  bool has_failed_ = false;
  bool was_told_ = false;
  std::string file_;
};

}  // namespace

void FailEachCall(const Recording& recording) {
  std::array<long, kDiskCalls> failed{};
  long told = 0;
  for (const DiskFault& fault : kFaults) {
    for (int number = 1;; ++number) {
      FailingSession session(&recording, &fault, number);
      if (!session.Run()) {
        break;
      }
      ++failed[static_cast<size_t>(fault.call)];
      told += session.was_told() ? 1 : 0;
    }
  }
  for (size_t call = 0; call < kDiskCalls; ++call) {
    Figure(std::string("store: calls to the disk that failed: ") + kDiskCallNames[call],
           failed[call]);
    if (failed[call] == 0) {
      Say(std::string("the session makes no such call: ") + kDiskCallNames[call]);
    }
  }
  Figure("store: of these that failed the step of the session", told);
}
