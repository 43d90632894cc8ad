#include "router.h"

#include <nettle/base16.h>
#include <nettle/md5.h>

#include <array>

#include "password.h"
#include "status.h"

namespace kioctl {
namespace {

std::string Md5(const std::string& text) {
  md5_ctx context = {};
  std::array<uint8_t, MD5_DIGEST_SIZE> digest = {};
  md5_init(&context);
  md5_update(&context, text.size(), reinterpret_cast<const uint8_t*>(text.data()));
  md5_digest(&context, digest.size(), digest.data());
  std::string digits(BASE16_ENCODE_LENGTH(digest.size()), '\0');
  base16_encode_update(digits.data(), digest.size(), digest.data());
  return digits;
}

}  // namespace

// The router counts bytes: 63 of the password, and 127 of the whole.
std::string LoginKey(long uptime, const std::string& address, const std::string& password) {
  constexpr long kSlotSeconds = 20;
  constexpr size_t kMostPassword = 63;
  constexpr size_t kMostSource = 127;
  const std::string source =
      std::to_string(uptime / kSlotSeconds) + address + "admin" + password.substr(0, kMostPassword);
  return Md5(source.substr(0, kMostSource));
}

Router::Router(const std::string& url, const Options& options)
    : http_(url, options.timeout), options_(&options) {}

Reply Router::Try(const Request& request) {
  Reply reply = TryAsIs(request);
  if (reply.status == kUnauthorized) {
    LogIn();
    reply = TryAsIs(request);
  }
  return reply;
}

Reply Router::TryAsIs(const Request& request) {
  Request preferred = request;
  preferred.headers.emplace_back("Accept: application/problem+json, */*;q=0.5");
  return http_.Send(preferred);
}

Reply Router::Ask(const Request& request) {
  Reply reply = Try(request);
  ThrowUnlessDone(reply);
  return reply;
}

nlohmann::json Router::Device() {
  const Reply reply = http_.Send({.path = "/device"});
  ThrowUnlessDone(reply);
  nlohmann::json device = ReadJson(reply.body);
  if (!device.is_object() || !device.contains("uptime")) {
    throw Strange(url() + " does not describe itself as a router");
  }
  return device;
}

void Router::LogIn() {
  const std::string& password = GivenPassword();
  // The address that the router sees, and its clock.
  const Reply device = http_.Send({.path = "/device"});
  const nlohmann::json description = ReadJson(device.body);
  if (device.status != kOk || !description.contains("uptime")) {
    throw Strange(url() + " does not tell its uptime, which a login needs");
  }
  const std::string key =
      LoginKey(description["uptime"].get<long>(), device.local_address, password);
  // One character between the marker and the key does not count.
  const Reply reply = http_.Send({.method = "POST", .path = "/login", .body = "kioAppKey=:" + key});
  if (reply.status == kOk) {
    return;
  }
  Failure failure = Refusal(reply);
  if (reply.status == kUnauthorized) {
    failure.what = "the password is not that of " + url();
  }
  if (reply.status == kTooManyRequests || reply.status == kUnavailable) {
    failure.code = ExitCode::kNotLoggedIn;
  }
  throw failure;
}

const std::string& Router::GivenPassword() {
  if (!password_) {
    password_ = Password(options_->password_file, url());
  }
  if (!password_) {
    throw Failure{
        ExitCode::kNotLoggedIn, url() + " wants a login",
        "set KIO_PASSWORD, name a file of mode 600 with --password-file, or use a terminal"};
  }
  return *password_;
}

}  // namespace kioctl
