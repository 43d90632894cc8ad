// The resources by which settings are kept as an archive and restored.
#ifndef HOST_BACKUP_ROUTES_H
#define HOST_BACKUP_ROUTES_H

#include "backup.h"
#include "router.h"
#include "settings_routes.h"

namespace kiohost {

// `reader` makes archives in the thread of the sockets. All must outlive the router.
void AddBackupRoutes(Backup* backup, Backup* reader, const SettingsRoom& settings, Router* router);

}  // namespace kiohost

#endif  // HOST_BACKUP_ROUTES_H
