// The settings of the device as an archive that people can read, and back again.
#ifndef HOST_BACKUP_H
#define HOST_BACKUP_H

#include <string>
#include <utility>

#include "json.h"
#include "status.h"
#include "store.h"
#include "variable_list.h"

namespace kiohost {

class Backup {
 public:
  // What of the catalogue an app can set is a setting.
  Backup(Store* store, Catalogue catalogue) : store_(store), catalogue_(std::move(catalogue)) {}

  // The archive. Without `secrets` it holds no passwords and keys.
  Json Make(bool secrets);

  // The settings document of an archive. What the archive leaves out is as the device has it now.
  // `other_firmware` takes the archive of another firmware as well. A status that is not ok says
  // what does not fit.
  Status Read(const std::string& archive, bool other_firmware, std::string* document);

 private:
  // All settings, those but the secrets, or one text for each setting that there can be.
  enum class Contents { kAll, kPublic, kPossible };

  void Settings(Contents contents, Json* settings);
  Json Manifest();
  Status Check(const Json& archive, bool other_firmware);

  Store* store_;
  Catalogue catalogue_;
};

}  // namespace kiohost

#endif  // HOST_BACKUP_H
