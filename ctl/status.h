// The statuses of HTTP that the commands tell apart.
#ifndef CTL_STATUS_H
#define CTL_STATUS_H

namespace kioctl {

enum Status {
  kOk = 200,
  kNoContent = 204,
  kUnauthorized = 401,
  kForbidden = 403,
  kNotFound = 404,
  kConflict = 409,
  kPreconditionFailed = 412,
  kTooLarge = 413,
  kMisdirected = 421,
  kUnprocessable = 422,
  kTooManyRequests = 429,
  kServerError = 500,
  kUnavailable = 503,
};

}  // namespace kioctl

#endif  // CTL_STATUS_H
