// kioctl: the app's side of a router on a command line, over the HTTP interface alone.
#include <curl/curl.h>

#include <cstdio>
#include <exception>

#include "command_line.h"
#include "commands.h"
#include "interrupt.h"

namespace kioctl {
namespace {

// Without an address for a command that needs no router.
ExitCode RunFor(const std::string& url, const Options& options) {
  const bool is_one_of_many = options.routers.size() > 1;
  try {
    const Output out(options.json, options.colour, is_one_of_many ? url : "");
    try {
      Router router(url, options);
      Context context{&options, &out, url.empty() ? nullptr : &router};
      FindCommand(options.command)(&context);
      return ExitCode::kDone;
    } catch (const Failure& failure) {
      out.Fail(failure);
      return failure.code;
    } catch (const nlohmann::json::exception& error) {
      // A member that is absent or of another kind.
      const Failure failure =
          Strange("the router's answer is not as documented: " + std::string(error.what()));
      out.Fail(failure);
      return failure.code;
    }
  } catch (const Failure& failure) {
    // The output itself.
    std::fprintf(stderr, "kioctl: %s\n  next: %s\n", failure.what.c_str(), failure.next.c_str());
    return failure.code;
  }
}

// The first failure decides, but the other routers have their turn.
ExitCode Run(const Options& options) {
  if (options.routers.empty()) {
    return RunFor("", options);
  }
  ExitCode code = ExitCode::kDone;
  for (const std::string& url : options.routers) {
    const ExitCode one = RunFor(url, options);
    code = code == ExitCode::kDone ? one : code;
    if (one == ExitCode::kInterrupted) {
      return one;
    }
  }
  return code;
}

}  // namespace
}  // namespace kioctl

int main(int argc, char** argv) {
  try {
    kioctl::Options options;
    if (const auto code = kioctl::ReadCommandLine(argc, argv, &options)) {
      return static_cast<int>(*code);
    }
    kioctl::CatchInterrupts();
    curl_global_init(CURL_GLOBAL_ALL);
    const kioctl::ExitCode code = kioctl::Run(options);
    curl_global_cleanup();
    return static_cast<int>(code);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kioctl: %s\n", error.what());
    return static_cast<int>(kioctl::ExitCode::kLocal);
  }
}
