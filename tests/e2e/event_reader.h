// A client of GET /events.
#ifndef TESTS_E2E_EVENT_READER_H
#define TESTS_E2E_EVENT_READER_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "http_client.h"

// What a stream tells between two empty lines.
struct EventBlock {
  std::string id;
  std::string kind;
  nlohmann::json data;
  std::string comment;

  bool empty() const { return id.empty() && kind.empty() && comment.empty(); }
};

class EventReader {
 public:
  // Asks for the events, those behind the one with the id if it is given; or for another stream.
  explicit EventReader(int port, const std::string& last_id = "",
                       const std::string& from = "127.0.0.1", int receive_buffer = 0,
                       const std::string& url = "/events");
  ~EventReader();
  EventReader(const EventReader&) = delete;
  EventReader& operator=(const EventReader&) = delete;

  // The head of the answer; its body, too, when that is no stream.
  const HttpResponse& response() const { return response_; }

  // The next block; an empty one at the end, or when none comes for long.
  EventBlock Next();

  // Whether something comes within some milliseconds: an event, a comment or the end.
  bool HasNews(int milliseconds);

  // The next blocks up to the first of a kind: that one; an empty one when there is no news for
  // long.
  EventBlock Next(const std::string& kind);

  // The kinds of the events up to the first of a kind, with that one; up to the end without it.
  std::vector<std::string> KindsUntil(const std::string& kind);

  // Whether the stream has ended as it should, and was not broken off.
  bool ended() const { return ended_; }

  // The id to come back with.
  const std::string& last_id() const { return last_id_; }

  Connection& connection() { return connection_; }

 private:
  void Note();

  Connection connection_;
  HttpResponse response_;
  size_t taken_ = 0;  // of the body
  std::string last_id_;
  bool ended_ = false;
  bool noted_ = false;
};

#endif  // TESTS_E2E_EVENT_READER_H
