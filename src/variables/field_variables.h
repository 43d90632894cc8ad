// Variables of the record: checked, stored and read as their field's row says.
#ifndef KIO_VARIABLES_FIELD_VARIABLES_H
#define KIO_VARIABLES_FIELD_VARIABLES_H

#include "variables/request.h"

namespace kio::variables {

// Serves a variable of the record.
unsigned int ServeField(const Variable& variable, const SectionInstance& instance,
                        const Request& request);

}  // namespace kio::variables

#endif
