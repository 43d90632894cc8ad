// Addresses, masks and keys of radios, judged as plain models do. The input is three lines.
#include "input.h"
#include "kioapp/kioapp.h"
#include "testing/plain_validators.h"

namespace {

void Expect(bool expected, int flag, const char* finding) {
  if (flag != (expected ? 1 : 0)) {
    kio::fuzz::Report(finding);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  const std::string texts[] = {input.Line(), input.Line(), input.Line()};
  const kio::fuzz::GuardedText guarded[] = {kio::fuzz::GuardedText(texts[0]),
                                            kio::fuzz::GuardedText(texts[1]),
                                            kio::fuzz::GuardedText(texts[2])};
  for (std::size_t i = 0; i < 3; ++i) {
    const char* const text = guarded[i].get();
    Expect(kio::test::PlainIsIp(texts[i]), is_Valid_IP(text), "an address");
    Expect(kio::test::PlainIsNetmask(texts[i]), is_Valid_Netmask(text), "a mask");
    Expect(kio::test::PlainIsWpaPskKey(texts[i]), is_Valid_WpaPskKey(text), "a WPA key");
    for (const int n : {0, 5, 13}) {
      Expect(kio::test::PlainIsWepKey(texts[i], n), is_Valid_WepKey(text, n), "a WEP key");
    }
  }
  Expect(kio::test::PlainIsIpCheckMask(texts[0], texts[1], texts[2]),
         is_Valid_IP_CheckMask(guarded[0].get(), guarded[1].get(), guarded[2].get()),
         "two addresses and a mask");
  return 0;
}
