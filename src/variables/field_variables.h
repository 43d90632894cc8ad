// Variables of the record: checked, stored and read as their field's row says.
#ifndef KIO_VARIABLES_FIELD_VARIABLES_H
#define KIO_VARIABLES_FIELD_VARIABLES_H

#include "variables/place.h"

namespace kio::variables {

// Serves a variable of the record.
unsigned int ServeField(const Variable& variable, const Place& place, const Request& request);

}  // namespace kio::variables

#endif
