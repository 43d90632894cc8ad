#include "event_reader.h"

#include <optional>
#include <sstream>

EventReader::EventReader(int port, const std::string& last_id, const std::string& from,
                         int receive_buffer, const std::string& url)
    : connection_(port, from, receive_buffer), last_id_(last_id) {
  connection_.Send("GET " + url + " HTTP/1.1\r\nHost: router\r\n" +
                   (last_id.empty() ? "" : "Last-Event-ID: " + last_id + "\r\n") + "\r\n");
  response_ = connection_.BeginChunks();
}

EventReader::~EventReader() { Note(); }

// Before another request is sent on the connection. What came in part is left out.
void EventReader::Note() {
  if (!noted_) {
    const size_t end = response_.body.rfind("\n\n");
    response_.body.erase(end == std::string::npos ? 0 : end + 2);
    connection_.NoteChunks(response_);
  }
  noted_ = true;
}

EventBlock EventReader::Next() {
  std::string& body = response_.body;
  size_t end = 0;
  while ((end = body.find("\n\n", taken_)) == std::string::npos) {
    const std::optional<std::string> chunk = connection_.ReadChunk();
    if (!chunk || chunk->empty()) {
      ended_ = chunk.has_value();
      Note();
      return {};
    }
    body += *chunk;
  }
  std::istringstream lines(body.substr(taken_, end - taken_));
  taken_ = end + 2;
  EventBlock block;
  for (std::string line; std::getline(lines, line);) {
    const std::string name = line.substr(0, line.find(": "));
    const std::string value = line.substr(name.size() + 2);
    (name == "id" ? block.id : name == "event" ? block.kind : block.comment) = value;
    if (name == "data") {
      block.data = nlohmann::json::parse(value, nullptr, false);
      block.comment.clear();
    }
  }
  last_id_ = block.id.empty() ? last_id_ : block.id;
  return block;
}

bool EventReader::HasNews(int milliseconds) {
  return response_.body.find("\n\n", taken_) != std::string::npos ||
         connection_.HasMore(milliseconds);
}

EventBlock EventReader::Next(const std::string& kind) {
  EventBlock block = Next();
  while (block.kind != kind && block.comment.empty() && !block.empty()) {
    block = Next();
  }
  return block.kind == kind ? block : EventBlock();
}

std::vector<std::string> EventReader::KindsUntil(const std::string& kind) {
  std::vector<std::string> kinds;
  while (kinds.empty() || kinds.back() != kind) {
    const EventBlock block = Next();
    if (block.empty() || !block.comment.empty()) {
      break;
    }
    if (!block.kind.empty()) {
      kinds.push_back(block.kind);
    }
  }
  return kinds;
}
