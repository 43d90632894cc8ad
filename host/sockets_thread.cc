#include "sockets_thread.h"

#include <sys/select.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace kiohost {
namespace {

// The clients are swept at least that often, when that is due.
constexpr long kLongestWait = 1000;

timeval Timeval(long milliseconds) {
  constexpr long kPerSecond = 1000;
  timeval time = {};
  time.tv_sec = milliseconds / kPerSecond;
  time.tv_usec = milliseconds % kPerSecond * kPerSecond;
  return time;
}

}  // namespace

Status SocketsThread::Start(FileDescriptor listener) {
  desk_->ForgetJob();
  Status status = server_->Start(std::move(listener));
  if (!status.ok()) {
    return status;
  }
  // Unlike that of a std::thread, its failure can be told.
  const int error = pthread_create(&thread_, nullptr, Run, this);
  runs_ = error == 0;
  if (!runs_) {
    server_->Stop();
    return {ExitCode::kNetwork,
            std::string("the thread of the sockets could not be started: ") + std::strerror(error)};
  }
  return {};
}

void* SocketsThread::Run(void* self) {
  static_cast<SocketsThread*>(self)->Serve();
  return nullptr;
}

void SocketsThread::Stop() {
  if (std::exchange(runs_, false)) {
    desk_->TellStop();
    pthread_join(thread_, nullptr);
    desk_->ForgetJob();
  }
}

void SocketsThread::Serve() {
  while (!WaitAndServe(true).stop) {
  }
  server_->EndStreams();
  // Mostly one look is enough: an answer is sent at once.
  constexpr int kMostLooks = 4;
  for (int i = 0; i < kMostLooks && server_->IsAnswering(); ++i) {
    WaitAndServe(false);
  }
  server_->Stop();
}

LibraryDesk::News SocketsThread::WaitAndServe(bool waits) {
  fd_set read_set;
  fd_set write_set;
  fd_set except_set;
  FD_ZERO(&read_set);
  FD_ZERO(&write_set);
  FD_ZERO(&except_set);
  int max_fd = desk_->news_descriptor();
  FD_SET(max_fd, &read_set);
  server_->AddDescriptors(&read_set, &write_set, &except_set, &max_fd);
  const long wanted = waits ? server_->MillisecondsToWait().value_or(kLongestWait) : 0;
  timeval timeout = Timeval(std::min(wanted, kLongestWait));
  if (select(max_fd + 1, &read_set, &write_set, &except_set, &timeout) < 0) {
    FD_ZERO(&read_set);
    FD_ZERO(&write_set);
    FD_ZERO(&except_set);
  }
  const LibraryDesk::News news = desk_->TakeNews();
  server_->HandleNews(news);
  if (clients_ != nullptr) {
    clients_->SweepIfDue();
  }
  server_->Run(read_set, write_set, except_set);
  return news;
}

}  // namespace kiohost
