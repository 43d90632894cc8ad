#include "http.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string_view>

#include "interrupt.h"

namespace kioctl {
namespace {

struct Receiver {
  CURL* curl;
  const Request* request;
  Reply* reply;
  bool has_enough = false;
};

size_t TakeBody(const char* data, size_t /*one*/, size_t size, void* receiver) {
  constexpr long kGood = 200;
  Receiver& to = *static_cast<Receiver*>(receiver);
  long status = 0;
  curl_easy_getinfo(to.curl, CURLINFO_RESPONSE_CODE, &status);
  if (!to.request->take || status != kGood) {
    to.reply->body.append(data, size);
    return size;
  }
  to.has_enough = !to.request->take({data, size});
  return to.has_enough ? 0 : size;
}

size_t TakeHeader(const char* data, size_t /*one*/, size_t size, void* reply) {
  const std::string_view line(data, size);
  const size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    return size;
  }
  std::string name;
  for (const char c : line.substr(0, colon)) {
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  const size_t begin = line.find_first_not_of(" \t", colon + 1);
  const size_t end = line.find_last_not_of(" \t\r\n");
  static_cast<Reply*>(reply)->headers[name] =
      begin == std::string_view::npos || end < begin ? "" : line.substr(begin, end + 1 - begin);
  return size;
}

int LookForInterrupt(void* request, curl_off_t /*to_get*/, curl_off_t /*got*/,
                     curl_off_t /*to_send*/, curl_off_t /*sent*/) {
  const int enough = static_cast<const Request*>(request)->changes ? 2 : 1;
  return Interrupts() >= enough ? 1 : 0;
}

std::string Normal(std::string url) {
  if (url.find("://") == std::string::npos) {
    url.insert(0, "http://");
  }
  while (!url.empty() && url.back() == '/') {
    url.pop_back();
  }
  return url;
}

struct FreeHeaders {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using Headers = std::unique_ptr<curl_slist, FreeHeaders>;

Headers HeadersOf(const Request& request) {
  curl_slist* list = nullptr;
  if (request.as_is) {
    // Those that curl sends by itself are taken away by a name alone, unless they stand below.
    for (const char* name : {"Accept:", "Content-Type:", "Expect:"}) {
      const auto is_given = [name](const std::string& header) { return header.starts_with(name); };
      if (std::none_of(request.headers.begin(), request.headers.end(), is_given)) {
        list = curl_slist_append(list, name);
      }
    }
    for (const std::string& header : request.headers) {
      list = curl_slist_append(list, header.c_str());
    }
    return Headers(list);
  }
  // Without the wait for a "100 Continue", which a small router may not send.
  list = curl_slist_append(list, "Expect:");
  const auto is_type = [](const std::string& header) {
    return header.starts_with("Content-Type:");
  };
  if (!request.body.empty() &&
      std::none_of(request.headers.begin(), request.headers.end(), is_type)) {
    list = curl_slist_append(list, "Content-Type: application/octet-stream");
  }
  for (const std::string& header : request.headers) {
    list = curl_slist_append(list, header.c_str());
  }
  return Headers(list);
}

}  // namespace

std::string Reply::Header(const std::string& name) const {
  const auto header = headers.find(name);
  return header == headers.end() ? "" : header->second;
}

std::string Escape(const std::string& text) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr unsigned kHalf = 4;
  constexpr unsigned kLowHalf = 15;
  std::string escaped;
  for (const char c : text) {
    if (kPlain.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'%', kDigits[byte >> kHalf], kDigits[byte & kLowHalf]};
    }
  }
  return escaped;
}

Http::Http(const std::string& url, long seconds)
    : url_(Normal(url)), seconds_(seconds), handle_(curl_easy_init()) {}

Http::~Http() { curl_easy_cleanup(handle_); }

Reply Http::Send(const Request& request) {
  constexpr long kConnectSeconds = 5;
  Reply reply;
  CURL* const curl = handle_;
  const std::string url = url_ + request.path;
  const Headers headers = HeadersOf(request);
  const long seconds = request.seconds > 0 ? request.seconds : seconds_;
  curl_easy_reset(curl);
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(curl, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  // A router is reached directly, whatever proxy there is for other servers.
  curl_easy_setopt(curl, CURLOPT_PROXY, "");
  curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, request.method.c_str());
  if (request.method == "HEAD") {
    curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
  } else if (request.method != "GET") {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request.body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, request.body.data());
  }
  if (!request.path.starts_with('/')) {
    curl_easy_setopt(curl, CURLOPT_URL, url_.c_str());
    curl_easy_setopt(curl, CURLOPT_REQUEST_TARGET, request.path.c_str());
  }
  if (!request.from.empty()) {
    curl_easy_setopt(curl, CURLOPT_INTERFACE, request.from.c_str());
  }
  // curl sends a request anew when its old connection turns out to be dead. A change is sent once.
  curl_easy_setopt(curl, CURLOPT_FRESH_CONNECT, request.changes ? 1L : 0L);
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, std::min(seconds, kConnectSeconds));
  curl_easy_setopt(curl, CURLOPT_TIMEOUT, request.take && !request.ends_in_time ? 0L : seconds);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, TakeBody);
  Receiver receiver{curl, &request, &reply};
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &receiver);
  curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, TakeHeader);
  curl_easy_setopt(curl, CURLOPT_HEADERDATA, &reply);
  curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, LookForInterrupt);
  curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &request);
  const CURLcode error = curl_easy_perform(curl);
  const bool has_ended = error == CURLE_OPERATION_TIMEDOUT && request.ends_in_time;
  if (error != CURLE_OK && !receiver.has_enough && !has_ended) {
    throw WhyNot(error, request);
  }
  long status = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
  reply.status = static_cast<int>(status);
  const char* address = nullptr;
  curl_easy_getinfo(curl, CURLINFO_LOCAL_IP, &address);
  reply.local_address = address == nullptr ? "" : address;
  return reply;
}

Failure Http::WhyNot(int error, const Request& request) const {
  const std::string reason = curl_easy_strerror(static_cast<CURLcode>(error));
  const std::string unknown = "whether the router did it is not known; kioctl device tells";
  switch (error) {
    case CURLE_ABORTED_BY_CALLBACK: {
      Failure failure = Interrupted();
      if (request.changes) {
        failure.next = unknown;
      }
      return failure;
    }
    case CURLE_URL_MALFORMAT:
    case CURLE_UNSUPPORTED_PROTOCOL:
      return {ExitCode::kUsage, "this is no address of a router: " + url_,
              "give one such as --router http://192.168.1.1:8080"};
    case CURLE_COULDNT_RESOLVE_HOST:
      return {ExitCode::kUnreachable, "there is no host of the name in " + url_,
              "check --router or KIO_ROUTER"};
    case CURLE_COULDNT_CONNECT:
      return {ExitCode::kUnreachable, "nothing answers at " + url_,
              "check the address and that the router is on; kioctl wait waits for it"};
    case CURLE_OPERATION_TIMEDOUT: {
      // Before the connection stood, nothing was sent.
      double connected = 0;
      curl_easy_getinfo(handle_, CURLINFO_CONNECT_TIME, &connected);
      return {ExitCode::kTimeout, url_ + " did not answer in time",
              connected > 0 && request.changes ? unknown
                                               : "try again, or give more time with --timeout"};
    }
    default:
      return {
          ExitCode::kUnreachable, url_ + " gave no whole answer: " + reason,
          request.changes ? unknown : "try again; kioctl wait waits for a router that restarts"};
  }
}

}  // namespace kioctl
