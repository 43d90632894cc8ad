// The requests that wait for the thread of the library, and the one that it has. They belong to the
// thread of the sockets.
#ifndef HOST_LIBRARY_LINE_H
#define HOST_LIBRARY_LINE_H

#include <deque>
#include <vector>

#include "http_request.h"
#include "library_desk.h"

namespace kiohost {

// First come, first served.
class LibraryLine {
 public:
  explicit LibraryLine(LibraryDesk* desk) : desk_(desk) {}

  void Add(HttpRequest* request) { waiting_.push_back(request); }

  // Takes out a request that waits.
  void Remove(HttpRequest* request);

  // Takes what the library has done. Returns the requests that need not wait any more.
  std::vector<HttpRequest*> Advance(const LibraryDesk::News& news);

  // Gives the library its next request, unless it has one.
  void PutNext();

  // Forgets all requests, and returns them. The library must not be at work for one.
  std::vector<HttpRequest*> Clear();

 private:
  HttpRequest* TakeFromLibrary();
  void TakeBackRead();
  void AnswerReads(std::vector<HttpRequest*>* answered);

  LibraryDesk* desk_;
  std::deque<HttpRequest*> waiting_;
  HttpRequest* in_library_ = nullptr;
};

}  // namespace kiohost

#endif  // HOST_LIBRARY_LINE_H
