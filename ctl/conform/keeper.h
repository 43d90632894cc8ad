// Keeps the settings: learns before the first case how they are brought back, and does it.
#ifndef CTL_CONFORM_KEEPER_H
#define CTL_CONFORM_KEEPER_H

#include <string>

#include "conform/conversation.h"

namespace kioctl::conform {

class Keeper {
 public:
  explicit Keeper(Conversation* talk) : talk_(talk) {}

  // Learns the facts of the router. Only `for_changes` fetches the secrets. Throws Broken when it
  // is none, or in a state in which nothing can be tried out.
  void Learn(bool for_changes);

  // Forgets what was set, takes back what waits, and restores what differs from the beginning. When
  // the case before has passed, lastApply tells whether anything was changed at all.
  void BringBack(bool has_passed);

  // The same in the end, whatever lastApply tells. Throws Broken when something still differs.
  void BringBackAll();

 private:
  void LearnLogin();
  void LearnSettings();
  void LearnWayBack();
  void Restore();
  // Whether the dry run of a request says that nothing would change. Why not becomes a fact.
  bool ChangesNothing(const std::string& path, const std::string& body);
  std::string Differences();
  std::string LastApply();

  Conversation* talk_;
  std::string last_apply_;  // at the last look
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_KEEPER_H
