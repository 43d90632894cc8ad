#include "faulty_wire.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>

#include "client_timeout.h"
#include "fault_points.h"
#include "faulty_stream.h"

namespace kiohost {
namespace {

using Kind = FaultPoints::Wire::Kind;
using std::chrono::milliseconds;

// When the client does not take more.
constexpr milliseconds kRetry{20};

// The connection is reset when it is closed.
void ResetAtClose(int socket) {
  const linger at_once = {.l_onoff = 1, .l_linger = 0};
  setsockopt(socket, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

// What the host sends itself: the server library sends a head in one piece, and as it likes.
std::string BytesOf(const HttpRequest& request, const Reply& reply) {
  std::string bytes = RawResponse(reply);
  if (request.view().method() == MHD_HTTP_METHOD_HEAD) {
    bytes.resize(bytes.size() - reply.body.size());
  }
  return bytes;
}

}  // namespace

bool FaultyWire::Refuses(int socket, const std::string& address) {
  FaultPoints* const faults = WireFaults();
  if (faults == nullptr || !faults->OnConnection(address)) {
    return false;
  }
  ResetAtClose(socket);
  return true;
}

std::optional<Reply> FaultyWire::Meet(HttpRequest* request) {
  if (request->has_met_faults()) {
    return std::nullopt;
  }
  FaultPoints* const faults = WireFaults();
  const RequestView& view = request->view();
  const FaultPoints::Wire fault =
      faults == nullptr ? FaultPoints::Wire()
                        : faults->OnRequest({view.method(), view.path(), view.peer_address()});
  request->set_wire_fault(fault);
  if (fault.kind != Kind::kAnswer) {
    return std::nullopt;
  }
  const auto status = static_cast<unsigned int>(fault.amount);
  return status == MHD_HTTP_SERVICE_UNAVAILABLE
             ? TryLater(status, "a fault rule answers: unavailable", fault.retry_after)
             : ErrorReply(status, "a fault rule answers: internal error");
}

FaultyWire::Way FaultyWire::Take(Connection* connection, Reply* reply, Clock::time_point now) {
  HttpRequest* const request = connection->request();
  // What is done later is done once.
  const FaultPoints::Wire fault = request->TakeWireFault();
  switch (fault.kind) {
    case Kind::kNone:
    case Kind::kAnswer:
      return Way::kSend;
    case Kind::kReset:
      ResetAtClose(connection->socket());
      connection->BeginAnswer(now);
      connection->Abandon();
      return Way::kBreak;
    default:
      break;
  }
  const bool drips = fault.kind == Kind::kDrip;
  Held held = {.connection = connection, .next = now, .sent = now};
  if (fault.kind == Kind::kDelay) {
    held.is_delayed = true;
    held.next += milliseconds(fault.amount);
    if (!request->refusal()) {
      request->set_reply(*reply);
    }
  } else if (reply->stream != nullptr) {
    reply->stream = std::make_shared<FaultyStream>(reply->stream, fault.amount, drips);
    return Way::kSend;
  } else {
    held.rest = BytesOf(*request, *reply);
    held.piece = std::numeric_limits<size_t>::max();
    if (drips) {
      constexpr int64_t kMostPieces = 20;  // a second
      const int64_t pieces = std::min(fault.amount, kMostPieces);
      held.piece = static_cast<size_t>(fault.amount / pieces);
      held.pause = std::chrono::nanoseconds(std::chrono::seconds(1)) / pieces;
    } else {
      held.rest.resize(std::min(held.rest.size(), static_cast<size_t>(fault.amount)));
    }
  }
  connection->timeout().Enter(ClientTimeout::Phase::kWaits, now);
  MHD_suspend_connection(connection->handle());
  const bool is_delayed = held.is_delayed;
  held_.push_back(std::move(held));
  return is_delayed ? Way::kLater : Way::kTaken;
}

std::optional<FaultyWire::Clock::time_point> FaultyWire::Deadline() const {
  const auto first = std::min_element(held_.begin(), held_.end(),
                                      [](const Held& a, const Held& b) { return a.next < b.next; });
  return first == held_.end() ? std::nullopt : std::optional(first->next);
}

// Returns whether there is nothing more to do: all was sent, or the client does not read.
bool FaultyWire::SendPiece(Held* held, Clock::time_point now) {
  const ssize_t sent = send(held->connection->socket(), held->rest.data(),
                            std::min(held->rest.size(), held->piece), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (sent < 0) {
    held->next = now + kRetry;
    return errno != EAGAIN || now - held->sent >= ClientTimeout::kSilence;
  }
  held->rest.erase(0, static_cast<size_t>(sent));
  held->sent = now;
  held->next = now + held->pause;
  return held->rest.empty();
}

FaultyWire::Due FaultyWire::Run(Clock::time_point now) {
  Due due;
  std::erase_if(held_, [&due, now](Held& held) {
    if (held.next > now) {
      return false;
    }
    if (held.is_delayed) {
      due.resumed.push_back(held.connection);
      return true;
    }
    if (!SendPiece(&held, now)) {
      return false;
    }
    held.connection->BeginAnswer(now);
    due.closed.push_back(held.connection);
    return true;
  });
  return due;
}

void FaultyWire::Forget(const Connection* connection) {
  std::erase_if(held_, [connection](const Held& held) { return held.connection == connection; });
}

}  // namespace kiohost
