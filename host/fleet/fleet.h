// Many routers: made, started, watched and stopped together.
#ifndef HOST_FLEET_FLEET_H
#define HOST_FLEET_FLEET_H

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "fleet_options.h"
#include "json.h"
#include "profile.h"
#include "router_process.h"

namespace kiofleet {

// The exit code when a router has ended by itself.
inline constexpr ExitCode kRouterEnded{1};

class Fleet {
 public:
  // `program` is kiohost; the delivered profiles stand beside it.
  Fleet(FleetOptions options, std::filesystem::path program);
  ~Fleet();
  Fleet(const Fleet&) = delete;
  Fleet& operator=(const Fleet&) = delete;

  // Starts all routers, prints their table when all of them serve, and waits for a signal. When it
  // returns, none runs any more.
  Status Run();

 private:
  struct Router {
    std::string name;
    std::string host;
    std::string mac;
    std::filesystem::path store;
    RouterProcess process;
  };

  Status Prepare();
  Status MakeRouter(int number, const std::string& profile);
  std::vector<kiohost::Node> OwnNodes(int number, const std::string& name) const;
  std::vector<std::string> Arguments(int number, const std::filesystem::path& own,
                                     const std::filesystem::path& store) const;
  Status Start();

  // Waits for what happens next, for that long at most (negative: without limit). Returns false
  // when a stop was asked for.
  bool Wait(int milliseconds);
  bool ReadSignals();
  void ReapRouters();

  bool AllServe() const;
  size_t Running() const;
  kiohost::Json Table() const;
  void Stop();

  const FleetOptions options_;
  const std::filesystem::path program_;
  std::filesystem::path directory_;  // removed at the end
  std::vector<kiohost::ProfileNode> nodes_;
  std::vector<Router> routers_;
  sigset_t signals_before_ = {};
  int signals_ = -1;
  bool stops_ = false;
  bool one_ended_ = false;  // without being asked for
};

}  // namespace kiofleet

#endif  // HOST_FLEET_FLEET_H
