// The library's settings record as JSON.
#ifndef HOST_CONTROL_RECORD_JSON_H
#define HOST_CONTROL_RECORD_JSON_H

#include <kioapp/record.h>

#include "json.h"

namespace kiohost {

// Each section of the record is an object; the members have their names of record.h. Passwords and
// keys are as they are.
Json RecordAsJson(const RssXmlData& record);

}  // namespace kiohost

#endif  // HOST_CONTROL_RECORD_JSON_H
