"""kioctl conform against every profile of the virtual router."""

from conform_support import *

PROFILES = ("dual-band-router", "single-band-router", "dsl-router", "mobile-router", "wireless-extender",
            "version-1.0", "read-only", "locked-switches", "longest-texts")


class Profiles(Conform):
    def test_every_profile_conforms_and_keeps_its_settings(self):
        for profile in PROFILES:
            with self.subTest(profile=profile):
                self.bench.reset(profile)
                before = self.bench.nodes()
                result = self.check(self.conform(), err="the router conforms: ")
                self.assertEqual(self.bench.nodes(), before)
                skipped = len(re.findall(r"(?m)^ok .* # SKIP ", result.out))
                passed = len(re.findall(r"(?m)^ok ", result.out)) - skipped
                # What can be done with a device differs; nothing else is left out.
                least = {"dual-band-router": 160, "read-only": 110}.get(profile, 140)
                self.assertGreaterEqual(passed, least, result.out)
                self.assertNotIn(self.bench.password, result.out)

if __name__ == "__main__":
    unittest.main()
