// The resources by which settings are kept as an archive and restored.
#ifndef HOST_BACKUP_ROUTES_H
#define HOST_BACKUP_ROUTES_H

#include "backup.h"
#include "router.h"
#include "settings_routes.h"

namespace kiohost {

void AddBackupRoutes(Backup* backup, const SettingsRoom& settings, Router* router);

}  // namespace kiohost

#endif  // HOST_BACKUP_ROUTES_H
