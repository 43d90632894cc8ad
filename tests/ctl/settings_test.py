"""Settings documents, variables, batches, firmware and backups, by one kiohost."""

from support import *


class Settings(HostCase):
    def get(self, name):
        return self.check(self.run_here("get", name)).out.rstrip("\n")

    def send(self, document, *arguments):
        return self.run_here("send", *arguments, "-", text=document)

    def last_apply(self):
        return self.run_here("--json", "device").json["lastApply"]

    def test_a_document_is_sent_and_waited_for(self):
        result = self.send(change(DeviceName="Den"), "--wait", "--early")
        self.check(result, out="^applied: the settings are in force\n$", err="accepted as [0-9a-f]{16}")
        self.assertEqual(self.get("rss_DeviceName"), "Den")
        answer = self.send(change(DeviceName="Loft"), "--json").json
        self.assertEqual((answer["result"], answer["wait"]), (0, 5))
        self.assertEqual(self.run_here("wait", "--early", "--apply", answer["applyId"]).code, 0)
        self.assertEqual(self.last_apply()["id"], answer["applyId"])
        self.check(self.run_here("result"), out=r"(?m)^result\t0$")
        self.assertEqual(self.run_here("--json", "result").json,
                         {"result": 0, "message": "", "meaning": "applied", "wait": 5})

    def test_without_a_wait_it_says_what_to_wait_for(self):
        self.check(self.send(change(DeviceName="Den"), "--wait", "--early"))
        self.check(self.send(change(DeviceName="Hall")), out="^accepted as",
                   err="next: kioctl wait --apply [0-9a-f]{16} --boot [0-9a-f]{32} --for 5\n")

    def test_a_refusal_names_the_element_and_what_it_takes(self):
        result = self.run_here("send", str(BAD_CHANNEL))
        self.check(result, 1, out="^$",
                   err="Device/Wireless2.4/Channel .*\n  next: it takes a channel of .*: 0,1,2,3,4")
        error = self.run_here("--json", "send", str(BAD_CHANNEL)).json["error"]
        self.assertEqual((error["kind"], error["code"], error["element"]),
                         ("refused", 3, "Device/Wireless2.4/Channel"))
        self.check(self.send("no document"), 1, err="no root element")
        self.check(self.send("x" * 70000), 1, err="next: send less")
        self.check(self.run_here("send", self.host.dir + "/absent"), 7, err="cannot read")
        self.check(self.run_here("send", self.host.dir), 7, err="cannot read")

    def test_a_router_without_problem_details_refuses_by_its_result_document(self):
        def answer(_, path, __):
            text = ("<root><RssSetResult>20</RssSetResult><RssSetMsg>Device/RouterEnbl</RssSetMsg>"
                    "<RssGetWaitSec>0</RssGetWaitSec></root>")
            return 200, {}, json.dumps(device()) if path == "/device" else text

        server = Told(answer)
        self.check(kioctl(server.url, "send", "-", text="x"), 1,
                   err="a number is above its maximum: Device/RouterEnbl")
        server.close()

    def test_a_dry_run_tells_what_would_change(self):
        self.check(self.send(change(DeviceName="Den"), "--wait", "--early"))
        before = self.last_apply()
        self.check(self.send(change(DeviceName="Never"), "--dry-run"),
                   out="^Device/DeviceName\tDen\tNever\n$",
                   err="actions: DeviceResync .5 s., .*\nwait: 5 s\nlink: stays")
        self.assertEqual(self.last_apply(), before)
        self.check(self.run_here("send", "--dry-run", str(BAD_CHANNEL)), 1, err="Wireless2.4/Channel")
        self.assertEqual(self.send(change(DeviceName="Den"), "--dry-run", "--json").json["nodes"], [])

    def test_settings_are_confirmed_or_taken_back(self):
        self.check(self.send(change(DeviceName="Den"), "--wait", "--early"))
        self.check(self.run_here("confirm"), 1, err="next: there is nothing of that kind now")
        result = self.send(change(DeviceName="Bath"), "--confirm-within", "600", "--wait", "--early")
        self.check(result, err="go back in [0-9]+ s unless you type: kioctl confirm")
        self.check(self.send(change(DeviceName="Other")), 1, err="kioctl confirm keeps the settings")
        # It logs in anew by itself, as the router wants it.
        self.check(self.run_here("confirm"), out="^confirmed\n$")
        self.assertEqual(self.get("rss_DeviceName"), "Bath")
        self.check(self.send(change(DeviceName="Cellar"), "--confirm-within", "600"))
        self.check(self.run_here("confirm", "--take-back"), out="^taken back")
        self.assertTrue(wait_for(lambda: self.last_apply()["outcome"] == "rolled-back"))
        self.check(self.run_here("wait", "--early"), 6, err="^waiting.*|rolled back")
        self.assertEqual(self.get("rss_DeviceName"), "Bath")

    def test_a_change_made_for_other_settings_is_refused(self):
        self.check(self.send(change(DeviceName="Den"), "--wait", "--early"))
        wanted = self.last_apply()["id"]
        self.check(self.send(change(DeviceName="Bay"), "--if-match", wanted, "--wait", "--early"))
        self.check(self.send(change(DeviceName="Nook"), "--if-match", wanted), 1,
                   err="next: look at what has changed")
        self.assertEqual(self.get("rss_DeviceName"), "Bay")

    def test_cloning_takes_the_radios_only(self):
        self.check(self.send(change(DeviceName="Den"), "--wait", "--early"))
        document = change(BAD_CHANNEL.read_text(), DeviceName="Clone", WirelessName="Cloned")
        self.check(self.send(document, "--cloning", "--wait", "--early"))
        self.assertEqual(self.get("rss_DeviceName"), "Den")
        self.assertEqual(self.get("rss_Wl2_WirelessName"), "Cloned")

    def test_variables_one_by_one(self):
        self.check(self.run_here("set", "rss_DeviceName", "Attic"), out="^set\n$", err="next: kioctl apply")
        self.assertEqual(self.get("rss_DeviceName"), "Attic")
        self.assertEqual(self.get("Device/DeviceName"), "Attic")
        self.check(self.run_here("get", "--path", "rss_DeviceName"), out="^/sys/friendlyname\n$")
        self.check(self.run_here("forget"))
        self.assertNotEqual(self.get("rss_DeviceName"), "Attic")
        self.check(self.run_here("validate", "rss_Upl_IP", "192.0.2.5"), out="^valid\n$")
        self.check(self.run_here("validate", "rss_Upl_IP", "192.0.2.300"), 1,
                   err="next: it takes an IPv4 address of a host")
        self.check(self.run_here("set", "rss_Wl2_EncryptionMode", "WPA9"), 1,
                   err="next: it takes .*one of: None WEP")
        self.check(self.run_here("get", "rss_Nothing"), 1, err="next: list the names: kioctl vars")
        self.check(self.run_here("set", "rss_DeviceName"), 2, err="there is no value")
        self.assertEqual(self.run_here("--json", "get", "rss_DeviceModel").json,
                         {"name": "rss_DeviceModel", "value": "DR-2400"})

    def test_a_secret_is_not_set_on_the_command_line(self):
        self.check(self.run_here("set", "rss_DevicePwd", "long-enough"), 2, err="not given on the command line")
        self.check(self.run_here("set", "rss_DevicePwd", "-", text="long-enough\n"), out="^set\n$")
        self.assertEqual(self.get("rss_DevicePwd"), "long-enough")
        self.check(self.run_here("forget"))
        terminal = OnTerminal(self.host.url, "set", "rss_Wl2_EncryptionKey", password=PASSWORD)
        self.assertTrue(terminal.see("rss_Wl2_EncryptionKey: "))
        terminal.type("typed-in-secret\n")
        self.assertEqual(terminal.end(), 0)
        self.assertNotIn("typed-in", terminal.seen)
        self.assertEqual(self.get("rss_Wl2_EncryptionKey"), "typed-in-secret")
        self.check(self.run_here("forget"))

    def test_what_was_set_is_applied_and_committed(self):
        self.check(self.run_here("set", "rss_DeviceName", "Porch"))
        answer = self.run_here("--json", "apply").json
        self.assertEqual(self.last_apply()["id"], answer["applyId"])
        self.check(self.run_here("commit", "--wait", "--early"), out="^applied: the settings are in force")
        self.assertEqual(self.last_apply()["outcome"], "in-force")

    def test_the_table_of_variables(self):
        self.check(self.run_here("vars", "rss_Wl?_Channel"), out=r"^rss_Wl2_Channel\t.*\nrss_Wl5_Channel\t\d+\n$")
        self.check(self.run_here("vars", "devicepwd"), out=r"(?m)^rss_DevicePwd\t\*{8}$")
        self.check(self.run_here("vars", "devicepwd", "--secrets"), out=rf"(?m)^rss_DevicePwd\t{PASSWORD}$")
        self.check(self.run_here("vars", "nothing-like-it"), 1, err="no variable fits")
        self.check(self.run_here("vars", "--catalogue", "/Device/RouterEnbl"),
                   out="^rss_RouterEnbl\t/Device/RouterEnbl\tinteger\tnow\t")
        self.assertGreater(len(self.run_here("vars").out.splitlines()), 60)
        names = [one["name"] for one in self.run_here("--json", "vars", "Upl_IP").json["variables"]]
        self.assertEqual(names, ["rss_Upl_IP"])
        self.check(self.run_here("vars", "--changed-since", self.last_apply()["id"]
                                 if self.last_apply() else "none"))

    def test_batches(self):
        batch = self.host.file("batch", "rss_DeviceName=Shed\nrss_Wl2_WirelessName=Sofa\n")
        self.check(self.run_here("batch", batch, "--dry-run"), out="(?m)^Device/DeviceName\t.*\tShed$")
        self.check(self.run_here("batch", batch), out="^set\n$", err="next: kioctl apply")
        self.assertEqual(self.get("rss_DeviceName"), "Shed")
        self.check(self.run_here("batch", "-", text="rss_DeviceName=Loft&rss_Upl_IP=nonsense"), 1,
                   err="rss_Upl_IP.*\n.*kioctl forget drops them")
        self.check(self.run_here("forget"))
        self.check(self.run_here("batch", "-", "--separator", "|",
                                 text="rss_DeviceName=a&b|rss_Act_ApplyAllRssVars=|rss_Act_CommitRssVars="),
                   out="^applied as [0-9a-f]{16}\n$")
        self.check(self.run_here("wait", "--early"))
        self.assertEqual(self.get("rss_DeviceName"), "a&b")

    def test_a_backup_without_secrets_is_restored(self):
        self.check(self.send(change(DeviceName="Saved"), "--wait", "--early"))
        file = self.host.file("backup.json")
        self.check(self.run_here("backup", file), out="^written: ")
        self.assertEqual(os.stat(file).st_mode & 0o777, 0o600)
        text = pathlib.Path(file).read_text()
        self.assertFalse(json.loads(text)["secrets"])
        self.assertNotIn(PASSWORD, text)
        self.check(self.send(change(DeviceName="Later"), "--wait", "--early"))
        self.check(self.run_here("restore", file, "--dry-run"), out="Device/DeviceName\tLater\tSaved\n")
        self.check(self.run_here("restore", file), 2, out="Device/DeviceName\tLater\tSaved\n",
                   err="nobody has agreed")
        self.assertEqual(self.get("rss_DeviceName"), "Later")
        self.check(self.run_here("restore", file, "--yes", "--wait", "--early"), out="in force")
        self.assertEqual(self.get("rss_DeviceName"), "Saved")
        other = self.host.file("other", text.replace("DR-2400", "DR-9"))
        self.check(self.run_here("restore", other, "--yes"), 1, err="another model")
        self.assertEqual(self.run_here("backup", "-").out, text)

    def test_the_differences_are_shown_before_anything_is_asked(self):
        self.check(self.send(change(DeviceName="Saved"), "--wait", "--early"))
        file = self.host.file("asked.json")
        self.check(self.run_here("backup", file))
        self.check(self.send(change(DeviceName="Later"), "--wait", "--early"))
        for answer, name, code in (("n\n", "Later", 2), ("y\n", "Saved", 0)):
            terminal = OnTerminal(self.host.url, "restore", file, password=PASSWORD)
            self.assertTrue(terminal.see("[y/N]"))
            self.assertRegex(terminal.seen, "Device/DeviceName +Later +Saved")
            terminal.type(answer)
            self.assertEqual(terminal.end(), code, terminal.seen)
            self.assertEqual(self.get("rss_DeviceName"), name)

    def test_secrets_of_a_backup_are_sealed(self):
        file = self.host.file("sealed.json")
        secret = {"KIO_PASSPHRASE": "open sesame"}
        self.check(self.run_here("backup", file, "--secrets"), 2, err="there is no passphrase")
        self.assertFalse(os.path.exists(file))
        self.check(self.run_here("backup", file, "--secrets", env=secret))
        text = pathlib.Path(file).read_text()
        self.assertNotIn(PASSWORD, text)
        self.assertNotIn("Device", text)
        self.check(self.run_here("restore", file, "--dry-run", env=secret))
        self.check(self.run_here("restore", file, "--dry-run", env={"KIO_PASSPHRASE": "x"}), 7,
                   err="the passphrase is another, or the file was changed")
        sealed = json.loads(text)
        for member in ("archive", "nonce", "salt", "formatVersion"):
            damaged = dict(sealed, **{member: 9 if member == "formatVersion" else "AAAA"})
            self.check(self.run_here("restore", "-", "--dry-run", env=secret, text=json.dumps(damaged)), 7)
        self.check(self.run_here("backup", "/absent/file"), 7, err="cannot write")


class Firmware(HostCase):
    def test_a_search_without_a_server(self):
        host = self.host
        self.check(kioctl(host.url, "firmware", "status"), 1)
        self.check(kioctl(host.url, "firmware", "search"), 1,
                   err="firmware search failed: the download command failed")
        self.check(kioctl(host.url, "firmware", "status"), out="^result\t-1\n")
        self.check(kioctl(host.url, "firmware", "download"), 1, err="next: kioctl firmware search")
        self.check(kioctl(host.url, "firmware", "upgrade"), 1, err="next: kioctl firmware search")


class ToldFirmware(Case):
    """The steps against a router that says what it is told."""

    def setUp(self):
        self.asked = []
        self.states = {"0": 0, "1": 2, "2": 3, "4": 5, "9": [2]}
        self.running = ["old.bin"]
        self.server = Told(self.answer)

    def tearDown(self):
        self.server.close()

    def answer(self, _, path, __):
        if path == "/device":
            return 200, {}, json.dumps(device(events=[{"uptime": 1, "text": "firmware refused: no"}]))
        if path.startswith("/vars/"):
            return 200, {}, self.running.pop(0) if len(self.running) > 1 else self.running[0]
        action = path[-1]
        self.asked.append(action)
        state = self.states[action]
        if isinstance(state, list):
            state = state.pop(0) if len(state) > 1 else state[0]
        version = "<fwver>1.0.8</fwver><fwsize>2.5 M</fwsize>" if state >= 2 else ""
        moment = "<time>0</time>" if state == 5 else ""
        return 200, {}, f"<root>{version}{moment}<result>{state}</result></root>"

    def test_the_way_of_an_upgrade(self):
        url = self.server.url
        self.check(kioctl(url, "firmware", "search"), out="(?s)newer firmware.*version\t1.0.8",
                   err="next: kioctl firmware download")
        self.assertEqual(self.asked, ["0", "1"])
        self.states["9"] = [2, 3, 3, 4]
        self.check(kioctl(url, "firmware", "download"), out="^result\t4\n", err="fetching: 2.5 M")
        self.states["9"] = [4]
        self.running = ["old.bin", "new.bin"]
        self.check(kioctl(url, "firmware", "upgrade", "--wait"), out="^upgraded from old.bin to new.bin\n$")
        self.running = ["old.bin"]
        self.check(kioctl(url, "firmware", "upgrade", "--wait"), 6,
                   err="still runs old.bin: firmware refused: no")

    def test_ctrl_c_drops_the_image(self):
        self.states["9"] = [2, 3]
        terminal = OnTerminal(self.server.url, "firmware", "download", password=PASSWORD)
        self.assertTrue(terminal.see("fetching"))
        terminal.type("\x03")
        self.assertTrue(terminal.see("the router has dropped the image"))
        self.assertEqual(terminal.end(), 130)
        self.assertEqual(self.asked[-1], "0")


if __name__ == "__main__":
    unittest.main()
