// Requests to one router.
#ifndef CTL_HTTP_H
#define CTL_HTTP_H

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "failure.h"

namespace kioctl {

struct Request {
  std::string method = "GET";
  std::string path;  // with the query, escaped
  std::string body = {};
  std::vector<std::string> headers = {};
  // It changes the router: Ctrl-C waits for the answer, a second one does not.
  bool changes = false;
  long seconds = 0;       // 0: those of the options
  bool as_is = false;     // no headers but those above, on a connection that is kept
  std::string from = {};  // the own address; empty: any
  // Takes the body of a good answer as it comes, and tells whether to go on. Such a request may
  // last.
  std::function<bool(std::string_view)> take = {};
  bool ends_in_time = false;  // such a request has no more time than others; its end is no failure
};

struct Reply {
  int status = 0;
  std::string body;
  std::map<std::string, std::string> headers;  // the names in lower case
  std::string local_address;

  // The value of a header, empty without it.
  std::string Header(const std::string& name) const;
};

// A text as a part of a path or a query; slashes stay.
std::string Escape(const std::string& text);

// The connection to a router.
class Http {
 public:
  // `seconds` is the time that a request has unless it says otherwise.
  Http(const std::string& url, long seconds);
  ~Http();
  Http(const Http&) = delete;
  Http& operator=(const Http&) = delete;

  const std::string& url() const { return url_; }

  // Throws a Failure when there is no answer.
  Reply Send(const Request& request);

 private:
  Failure WhyNot(int error, const Request& request) const;

  std::string url_;
  long seconds_;
  void* handle_;
};

}  // namespace kioctl

#endif  // CTL_HTTP_H
