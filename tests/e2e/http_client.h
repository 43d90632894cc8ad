// A small HTTP client that sends what it is told, byte for byte.
#ifndef TESTS_E2E_HTTP_CLIENT_H
#define TESTS_E2E_HTTP_CLIENT_H

#include <deque>
#include <optional>
#include <string>

struct HttpResponse {
  int status = 0;  // 0: no answer
  std::string head;
  std::string body;

  // The value of a header, empty without it.
  std::string Header(const std::string& name) const;
};

// One connection to a port of the loopback address, from another one when that is given.
class Connection {
 public:
  // `receive_buffer` limits what the system takes for it; 0: as much as it likes.
  explicit Connection(int port, const std::string& from = "127.0.0.1", int receive_buffer = 0);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool connected() const { return fd_ >= 0; }

  // Returns false when the other side does not take everything.
  bool Send(const std::string& bytes);

  // Reads one answer with a Content-Length.
  HttpResponse Read();

  // Reads an answer that has a head alone.
  HttpResponse ReadHead();

  // Reads the head of an answer in chunks, and then a chunk each time: empty at the end of the
  // answer, nothing when the other side closes before that. The caller notes what came of it.
  HttpResponse BeginChunks() { return TakeHead(); }
  std::optional<std::string> ReadChunk();
  void NoteChunks(const HttpResponse& response) { Note(response, response.status == 200); }

  // All bytes until the other side closes.
  std::string ReadToEnd();

  // Waits for up to `seconds` for the other side to close; returns whether it did.
  bool WaitForClose(int seconds);

  // Whether the other side neither sends nor closes for that long.
  bool StaysSilent(int seconds);

  // Whether there is something to read, or the other side closes, within some milliseconds.
  bool HasMore(int milliseconds);

  // Ends the connection at once, unread answers are lost.
  void Abort();

 private:
  bool ReadMore();
  HttpResponse TakeHead();

  // Writes an answer and what it answers to the file of this process, for a later look at all.
  void Note(const HttpResponse& response, bool has_body);

  int fd_ = -1;
  int port_;
  std::deque<std::string> asked_;  // the lines of the requests that were not answered yet
  std::string received_;
};

// Answers of this port are those of a control port: they are looked at by its own description.
void NoteControlPort(int port);

// Requests with a body of known length.
std::string BodyRequest(const std::string& method, const std::string& url, const std::string& body);
std::string PostRequest(const std::string& url, const std::string& body);

HttpResponse Post(int port, const std::string& url, const std::string& body);
HttpResponse Put(int port, const std::string& url, const std::string& body);
HttpResponse Get(int port, const std::string& url);
HttpResponse Delete(int port, const std::string& url);
HttpResponse Request(int port, const std::string& request);

// Waits until what was answered before is committed: an action takes its turn, even one that does
// not exist. Returns false when there is no answer.
bool WaitForTurn(int port);

#endif  // TESTS_E2E_HTTP_CLIENT_H
