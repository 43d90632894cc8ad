// Running batches of variables in the tests.
#ifndef KIO_TESTS_VARIABLES_BATCH_H
#define KIO_TESTS_VARIABLES_BATCH_H

#include <cstring>
#include <string>

#include "../platform/guarded.h"
#include "variables/variables.h"

namespace kio::test {

class BatchFixture : public VariableTest {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    StoreSampleDevice();
    Host().Set("/sys/factorydefault", 0);
    Host().Set("/lan/wireless2.4:1/accesscontrol/acrule#", 2);
    Host().Set("/lan/wireless5:1/accesscontrol/acrule#", 1);
  }

  // The code of a batch and what it left in `nameOut`. Text and `nameOut`, which has 128 bytes, lie
  // at the very end of what the process may access.
  static Answer Batch(const std::string& text, char separator = '&', int apply = 0) {
    const Guarded batch{std::string_view(text)};
    const Guarded name(128);
    std::memcpy(name.data(), "before", 7);
    const int code = do_RssVar_Parser(batch.data(), separator, name.data(), apply);
    return {static_cast<unsigned>(code), name.Bytes().c_str()};
  }
};

}  // namespace kio::test

#endif
