#include "library_line.h"

#include <optional>
#include <utility>

namespace kiohost {

void LibraryLine::Remove(HttpRequest* request) { std::erase(waiting_, request); }

std::vector<HttpRequest*> LibraryLine::Advance(const LibraryDesk::News& news) {
  std::vector<HttpRequest*> answered;
  if (news.job_done && in_library_ != nullptr) {
    in_library_->KeepAfterReply();
    answered.push_back(TakeFromLibrary());
  }
  if (news.published) {
    TakeBackRead();
  }
  AnswerReads(&answered);
  return answered;
}

void LibraryLine::PutNext() {
  if (in_library_ != nullptr || waiting_.empty()) {
    return;
  }
  in_library_ = waiting_.front();
  waiting_.pop_front();
  in_library_->set_in_library(true);
  desk_->Put(
      {[request = in_library_] { return request->Handle(); }, in_library_->route()->runs_commands});
}

std::vector<HttpRequest*> LibraryLine::Clear() {
  std::vector<HttpRequest*> requests(waiting_.begin(), waiting_.end());
  waiting_.clear();
  if (in_library_ != nullptr) {
    requests.push_back(TakeFromLibrary());
  }
  return requests;
}

HttpRequest* LibraryLine::TakeFromLibrary() {
  in_library_->set_in_library(false);
  return std::exchange(in_library_, nullptr);
}

// A read may have been put down when the library was just about to begin with long work. It would
// not be looked at before that is over.
void LibraryLine::TakeBackRead() {
  if (in_library_ != nullptr && in_library_->route()->answer && desk_->TakeBackJob()) {
    waiting_.push_front(TakeFromLibrary());
  }
}

// While the library is at work for long, reads that wait for it may be answered without it.
void LibraryLine::AnswerReads(std::vector<HttpRequest*>* answered) {
  std::erase_if(waiting_, [answered](HttpRequest* request) {
    const Route& route = *request->route();
    std::optional<Reply> reply = route.answer ? route.answer(request->view()) : std::nullopt;
    if (!reply) {
      return false;
    }
    request->set_reply(std::move(*reply));
    answered->push_back(request);
    return true;
  });
}

}  // namespace kiohost
