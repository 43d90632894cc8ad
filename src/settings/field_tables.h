// The settings record, one row per field. Snapshot, document parser, verification, applying and the
// variables walk these tables; each row says all that they need to know of a field.
//
// The rows of a table stand in the order in which fields are read from the store, verified and
// written. Where a document has another order, groups part the rows.
#ifndef KIO_SETTINGS_FIELD_TABLES_H
#define KIO_SETTINGS_FIELD_TABLES_H

#include "settings/fields_device.h"
#include "settings/fields_uplink.h"
#include "settings/fields_wlan.h"

#endif
