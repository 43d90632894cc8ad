// Lends the host's store to the makers of random devices.
#ifndef TESTS_DRY_RUN_STORE_ADAPTER_H
#define TESTS_DRY_RUN_STORE_ADAPTER_H

#include "../../host/store.h"

void BindMakers(kiohost::Store* store);

#endif  // TESTS_DRY_RUN_STORE_ADAPTER_H
