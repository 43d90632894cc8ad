// The state of the router on the control port: /record, /reset and /snapshots.
#ifndef HOST_CONTROL_SNAPSHOT_ROUTES_H
#define HOST_CONTROL_SNAPSHOT_ROUTES_H

#include <functional>
#include <map>
#include <string>

#include "control/router_state.h"
#include "router.h"

namespace kiohost {

// Belongs to the thread of the library.
class Snapshots {
 public:
  static constexpr size_t kMost = 32;

  struct Host {
    RouterParts parts;
    // Has all done that is due. Returns whether the router is at rest then.
    std::function<bool()> settle;
    // Tells the other thread what the state has become.
    std::function<void()> publish;
    // Puts the store back to a profile, or to that of the start without a name. The directories
    // stay.
    std::function<Status(const std::string& name)> write_profile;
    // Ends what a test bench has begun that is no state of the router.
    std::function<void()> end_faults;
  };

  // The state that the router has now is that of its start, to which a reset leads.
  explicit Snapshots(Host host) : host_(std::move(host)), first_(SaveState(host_.parts)) {}

  Reply List() const;
  Reply Describe(const std::string& name) const;
  Reply Put(const std::string& name);
  Reply Delete(const std::string& name);
  Reply Restore(const std::string& name);
  Reply Reset(const RequestView& request);

 private:
  Reply Answer(const Status& status);

  Host host_;
  RouterState first_;
  std::map<std::string, RouterState> snapshots_;
};

void AddSnapshotRoutes(Snapshots* snapshots, Router* router);

}  // namespace kiohost

#endif  // HOST_CONTROL_SNAPSHOT_ROUTES_H
