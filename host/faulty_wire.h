// What fault rules do to the connections of a server: answers that come late, slowly or in part,
// and connections that break.
#ifndef HOST_FAULTY_WIRE_H
#define HOST_FAULTY_WIRE_H

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "connection.h"
#include "http_request.h"
#include "reply.h"

namespace kiohost {

// Belongs to the thread of the sockets. All times are real ones, as on any network.
class FaultyWire {
 public:
  using Clock = std::chrono::steady_clock;

  // Whether a connection that was just taken is refused: it is to be closed, and is reset by that.
  static bool Refuses(int socket, const std::string& address);

  // Has a request meet the rules, the first time that it is asked. Returns the answer that a rule
  // gives in the place of the host.
  static std::optional<Reply> Meet(HttpRequest* request);

  // What becomes of an answer that is about to be sent.
  enum class Way {
    kSend,   // it is sent; a rule may have changed its stream
    kLater,  // the connection is suspended, and resumed when it is to be sent
    kTaken,  // the connection is suspended, and closed when so much was sent as the rule says
    kBreak,  // the connection is to be closed, and is reset by that
  };
  Way Take(Connection* connection, Reply* reply, Clock::time_point now);

  // When `Run` has something to do.
  std::optional<Clock::time_point> Deadline() const;

  // Sends what is due. Returns the connections that are to be resumed, and those that are to be
  // closed.
  struct Due {
    std::vector<Connection*> resumed;
    std::vector<Connection*> closed;
  };
  Due Run(Clock::time_point now);

  // Forgets a connection that ends.
  void Forget(const Connection* connection);

 private:
  struct Held {
    Connection* connection;
    Clock::time_point next;       // when something is to be done
    bool is_delayed = false;      // and nothing is to be sent here
    std::string rest = {};        // what is still to be sent
    size_t piece = 0;             // so much of it at a time
    Clock::duration pause = {};   // between two pieces
    Clock::time_point sent = {};  // when something was last sent
  };

  static bool SendPiece(Held* held, Clock::time_point now);

  std::vector<Held> held_;
};

}  // namespace kiohost

#endif  // HOST_FAULTY_WIRE_H
