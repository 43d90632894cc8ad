// The talk of a case with the router. It logs in when that is needed, notes what was said, and lets
// time pass.
#ifndef CTL_CONFORM_CONVERSATION_H
#define CTL_CONFORM_CONVERSATION_H

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "conform/answer.h"
#include "conform/facts.h"

namespace kioctl::conform {

struct Call {
  std::string method = "GET";
  std::string path;
  std::string body = {};
  std::vector<std::string> headers = {};
  bool as_stranger = false;  // 401 is an answer like any other
};

class Conversation {
 public:
  // What the talk needs of the program around it.
  struct Means {
    std::string url;
    std::string control;  // of the virtual router's control port; empty without it
    long seconds = 0;     // that a request may take
    bool disruptive = false;
    bool slow = false;
    std::function<std::string()> password;
    std::function<void(const std::string&)> note;
  };

  explicit Conversation(Means means);
  ~Conversation();
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  const Means& means() const { return means_; }
  const Facts& facts() const { return facts_; }
  Facts* mutable_facts() { return &facts_; }

  Answer Send(const Call& call);
  Answer Get(const std::string& path) { return Send({.path = path}); }
  Answer Post(const std::string& path, const std::string& body = "") {
    return Send({.method = "POST", .path = path, .body = body});
  }
  Answer Put(const std::string& path, const std::string& body) {
    return Send({.method = "PUT", .path = path, .body = body});
  }
  Answer Delete(const std::string& path) { return Send({.method = "DELETE", .path = path}); }
  // The same of a client that does not log in.
  Answer Ask(const std::string& method, const std::string& path, const std::string& body = "") {
    return Send({.method = method, .path = path, .body = body, .as_stranger = true});
  }
  Value Device();

  // The events behind an id, until one is of the kind `last` or a second has passed. Without an id
  // the stream begins with what happens next, and `last` is empty.
  std::string Events(const std::string& since, const std::string& last);

  // Sends bytes on a connection of its own, and gives all that comes until the router closes it or
  // has said nothing for a while.
  std::string Exchange(const std::string& bytes);
  std::string HostName() const;  // as the Host header has it

  void LogIn();
  void LogOut();
  // The key of so many slots later, or of another password.
  std::string Key(int slots = 0, const std::string& password = "");

  // Whether so much time can be let pass, and letting it pass.
  bool CanLetPass(long seconds) const;
  void LetPass(long seconds);
  // Waits until the router is ready, and what was sent is in force unless that does not matter.
  void Settle(long promised, bool in_force = true);

  // A node of the virtual router's store, by its control port.
  bool HasControl() const { return !means_.control.empty(); }
  std::string Node(const std::string& path);
  void SetNode(const std::string& path, const std::string& text);

  // What was said since the last call of this.
  std::vector<std::string> TakeTranscript();
  std::string Masked(std::string text) const;

  // Nothing stops what is sent from now on, but a second Ctrl-C.
  void Insist() { insists_ = true; }

 private:
  struct Wires;

  Answer SendOnce(const Call& call);
  void Note(const Call& call, const Answer& answer);
  Answer Control(const std::string& method, const std::string& path, const std::string& body);

  Means means_;
  Facts facts_;
  std::unique_ptr<Wires> wires_;
  std::vector<std::string> transcript_;
  bool insists_ = false;
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_CONVERSATION_H
