"""Waiting for a router, and Ctrl-C."""

from support import *


class ToldWait(Case):
    """What a wait makes of what a router says."""

    def told(self, *devices, arguments=("--apply", "a1", "--early"), code=0, **patterns):
        """Waits for a router that says these, the last one again and again; None is being away."""
        rest = list(devices)

        def answer(*_):
            now = rest.pop(0) if len(rest) > 1 else rest[0]
            return (200, {}, json.dumps(now)) if now else (200, {"Content-Length": "99"}, "")

        server = Told(answer)
        result = kioctl(server.url, "--timeout", "1", "--json", "wait", *arguments)
        server.close()
        return self.check(result, code, **patterns).json

    def test_applied(self):
        report = self.told(device("applied", state="busy"), device())
        self.assertEqual((report["outcome"], report["applyId"], report["gone"]), ("applied", "a1", None))

    def test_away_and_back_after_a_restart(self):
        report = self.told(device("applied"), None, device(bootId="b2"),
                           arguments=("--apply", "a1", "--boot", "b1", "--early", "--for", "9"))
        self.assertEqual((report["outcome"], report["restarted"]), ("applied", True))
        self.assertIsNotNone(report["gone"])
        self.assertGreaterEqual(report["back"], report["gone"])

    def test_the_promised_time_passes_unless_it_is_to_be_early(self):
        report = self.told(device(), arguments=("--apply", "a1", "--for", "1"))
        self.assertGreaterEqual(report["passed"], 1)

    def test_rolled_back(self):
        report = self.told(device("going-back", state="busy"), device("rolled-back"), code=6,
                           err="rolled back: the settings are as they were before")
        self.assertEqual(report["error"]["outcome"], "rolled-back")

    def test_something_else(self):
        for other in (device(apply_id="a2"), device(apply_id=None)):
            report = self.told(None, other, code=6, err="came back as something else")
            self.assertEqual(report["error"]["outcome"], "something-else")

    def test_a_failed_script(self):
        report = self.told(device("failed"), code=6, err="a script that brings them up has failed")
        self.assertEqual(report["error"]["outcome"], "failed")

    def test_timeouts_tell_what_was_seen(self):
        arguments = ("--apply", "a1", "--grace", "1")
        report = self.told(device(), None, arguments=arguments + ("--for", "1"), code=5,
                           err="the router has not come back within")
        self.assertEqual(report["error"]["outcome"], "away")
        report = self.told(device("applied"), arguments=arguments, code=5, err="is only applied")
        self.assertEqual(report["error"]["outcome"], "pending")

    def test_without_an_id_the_last_change_counts(self):
        self.assertEqual(self.told(device(apply_id="z9"), arguments=("--early",))["applyId"], "z9")
        self.assertEqual(self.told(device(apply_id=None), arguments=("--early",))["outcome"],
                         "nothing-sent")

    def test_ctrl_c_ends_the_wait_and_nothing_else(self):
        server = Told(lambda *_: (200, {}, json.dumps(device("applied", state="busy"))))
        terminal = OnTerminal(server.url, "wait", "--apply", "a1", "--for", "600")
        # A bar: what was promised, what has passed, what was seen.
        self.assertTrue(terminal.see("waiting [........................] 0 s of 600 s, busy, applied"))
        terminal.type("\x03")
        self.assertTrue(terminal.see("nothing was left half-done"))
        self.assertEqual(terminal.end(), 130)
        server.close()

    def test_ctrl_c_lets_a_change_be_answered(self):
        sent, held = threading.Event(), threading.Event()

        def answer(method, path, _):
            if method == "GET":
                return 200, {}, json.dumps(device())
            sent.set()
            held.wait(PATIENCE)
            return 200, {"Kio-Apply-Id": "a1"}, ("<root><RssSetResult>0</RssSetResult><RssSetMsg/>"
                                                 "<RssGetWaitSec>5</RssGetWaitSec></root>")

        server = Told(answer)
        terminal = OnTerminal(server.url, "send", str(BAD_CHANNEL))
        self.assertTrue(sent.wait(PATIENCE))
        terminal.type("\x03")
        held.set()
        self.assertTrue(terminal.see("accepted as a1"))
        self.assertEqual(terminal.end(), 130)
        sent.clear()
        held.clear()
        terminal = OnTerminal(server.url, "send", str(BAD_CHANNEL))
        self.assertTrue(sent.wait(PATIENCE))
        terminal.type("\x03")
        self.assertTrue(terminal.see("^C"))
        terminal.type("\x03")
        self.assertTrue(terminal.see("whether the router did it is not known"))
        self.assertEqual(terminal.end(), 130)
        held.set()
        server.close()


class RealWait(Case):
    """A host that goes away as a router does."""

    def test_it_goes_comes_back_and_dies_in_between(self):
        host = Host("--open")
        document = host.file("d.xml", CHANGE)
        self.check(kioctl(host.url, "send", "--wait", "--early", document))
        host.kill()
        # Now a name alone changes, for which few seconds are promised.
        host.start("--real-waits", "--open")
        document = host.file("d.xml", change(DeviceName="Den"))
        sent = self.check(kioctl(host.url, "--json", "send", "--wait", document)).json
        self.assertEqual(sent["outcome"], "applied")
        self.assertIsNotNone(sent["gone"])
        self.assertGreaterEqual(sent["passed"], sent["promised"])
        self.assertFalse(sent["restarted"])
        # A host that is killed makes up for the commit at its next start.
        document = host.file("d.xml", change(DeviceName="Loft"))
        sent = self.check(kioctl(host.url, "--json", "send", document)).json
        host.kill()
        host.start("--open")
        seen = self.check(kioctl(host.url, "--json", "wait", "--early", "--apply", sent["applyId"],
                                 "--boot", sent["bootId"])).json
        self.assertEqual((seen["outcome"], seen["restarted"]), ("applied", True))
        host.close()


if __name__ == "__main__":
    unittest.main()
