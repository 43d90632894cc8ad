// Where the thread of the sockets and the thread of the library meet. The first puts work down for
// the second, which is the only one that calls the library, and is told when it is done. Neither
// waits for the other.
#ifndef HOST_LIBRARY_DESK_H
#define HOST_LIBRARY_DESK_H

#include <functional>
#include <mutex>
#include <optional>

#include "listener.h"
#include "reply.h"

namespace kiohost {

class LibraryDesk {
 public:
  // With a bell, work is told of at that desk, too: one wait serves both.
  explicit LibraryDesk(const LibraryDesk* bell = nullptr);

  // Whether the system had descriptors for it.
  bool valid() const { return work_.valid() && news_.valid(); }

  // Readable when there is work, and when there is news for the thread of the sockets. Looking for
  // either makes its descriptor unreadable.
  int work_descriptor() const { return work_.get(); }
  int news_descriptor() const { return news_.get(); }

  // For the thread of the sockets.

  struct Job {
    std::function<bool()> run;  // returns whether work will follow the reply
    bool is_long = false;       // it may run commands
  };
  // The next job must not come before the one before it is done, or taken back.
  void Put(Job job);
  // Takes back a job that was not begun. Returns whether there was one.
  bool TakeBackJob();
  void PutAfterReply(AfterReply after_reply);

  struct News {
    bool job_done = false;
    bool turn_over = false;  // the work after a reply is done
    bool published = false;  // reads can be answered without the library
    bool stop = false;
  };
  News TakeNews();

  // For the thread of the library.

  std::optional<Job> TakeJob();
  std::optional<AfterReply> TakeAfterReply();
  void TellJobDone();
  void TellTurnOver();
  void TellPublished();
  void TellStop();

  // For any thread.

  // There are events to be sent.
  void TellEvents();

  // Forgets a job that was not begun, and all news. For when the thread of the sockets does not
  // run.
  void ForgetJob();

 private:
  void Tell(bool News::*what);
  void Ring() const;

  const LibraryDesk* bell_;
  FileDescriptor work_;
  FileDescriptor news_;
  std::mutex mutex_;
  std::optional<Job> job_;
  std::optional<AfterReply> after_reply_;
  News told_;
};

}  // namespace kiohost

#endif  // HOST_LIBRARY_DESK_H
