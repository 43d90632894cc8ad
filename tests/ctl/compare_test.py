"""diff and capture: two of router, archive, profile and document, setting by setting."""

import urllib.request

from support import *

PROFILES = SOURCE / "host/profiles"
FACTORY = "dual-band-router"


def diff(*arguments, **options):
    return kioctl(None, "diff", *arguments, **options)


def rows(result):
    """The lines of a comparison in a pipe, by the settings' names."""
    return {line.split("\t")[1]: (line.split("\t")[0], *line.split("\t")[2:])
            for line in result.out.splitlines()}


class Files(Case):
    """Comparisons that need no router."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="k.")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def file(self, name, content):
        path = pathlib.Path(self.folder.name, name)
        path.write_text(content)
        return str(path)

    def profile(self, name, lines):
        include = os.path.relpath(PROFILES / (FACTORY + ".profile"), self.folder.name)
        return self.file(name, f"include {include}\n{lines}\n")

    def test_the_same_profile_by_name_and_by_file(self):
        self.check(diff(FACTORY, str(PROFILES / (FACTORY + ".profile"))), out="^$",
                   err="^no setting differs\n$")
        answer = self.check(diff("--json", FACTORY, FACTORY)).json
        self.assertEqual((answer["same"], answer["differences"]), (True, []))
        self.assertEqual(answer["a"], {"kind": "profile", "name": FACTORY})

    def test_settings_that_differ_are_told_in_the_words_of_the_catalogue(self):
        other = self.profile("other", "/sys/friendlyname = Attic\n/sys/user:1/password = other-secret\n"
                             "/uplink/conntype = dhcp\n/lan/wireless5:1/wlschedule = 00\n"
                             "/zentrolinks/apcloning = 2\n/sys/factorydefault = 0")
        result = self.check(diff(FACTORY, other), 8, err="3 settings differ\n  next: kioctl diff --json")
        # A word in another case and a number with more digits are the same to a device.
        self.assertEqual(rows(result), {
            "Device/DeviceName": ("differs", "Home router", "Attic"),
            "Device/DevicePwd": ("secret-differs", "(hidden)", "(hidden)"),
            "/zentrolinks/apcloning": ("differs", "1", "2")})
        result = self.check(diff("--json", FACTORY, other), 8)
        name, password, _ = result.json["differences"]
        self.assertEqual((name["kind"], name["setting"], name["variable"], name["node"], name["a"], name["b"]),
                         ("differs", "Device/DeviceName", "rss_DeviceName", "/sys/friendlyname",
                          "Home router", "Attic"))
        self.assertEqual(name["meaning"], "Name of the router.")
        self.assertEqual((password["a"], password["b"], password["noteOfA"]), (None, None, "hidden"))
        for secret in ("other-secret", PASSWORD):
            self.assertNotIn(secret, result.out + result.err)

    def test_what_a_side_has_no_use_for_is_told_apart(self):
        other = self.profile("radio", "without /lan/wireless5:1\n/uplink/hardwaretype = WWan802.11\n"
                             "/uplink/extendersite/wirelessname = Upstairs")
        result = rows(self.check(diff(other, FACTORY), 8))
        self.assertEqual(result["Device/UpLinkConnection/HardwareType"], ("differs", "WWan802.11", "Ethernet"))
        self.assertEqual(result["Device/UpLinkConnection/ExtenderSite/WirelessName"],
                         ("one-side", "Upstairs", "(not used: HardwareType is Ethernet)"))
        self.assertEqual(result["Device/Wireless5/Channel"],
                         ("one-side", "(not used: there is no such radio)", "36"))

    def test_what_a_document_does_not_hold_is_no_difference(self):
        document = self.file("short.xml", """<root><specVersion><major>1</major><minor>1</minor></specVersion>
            <Device><DeviceName>Home router</DeviceName><SafetyVyr> </SafetyVyr>
            <UpLinkConnection><Configurable>0</Configurable><ConnType>PPPoE</ConnType></UpLinkConnection>
            </Device></root>""")
        result = self.check(diff(FACTORY, document), err="^no setting differs; [0-9]+ on one side only\n$")
        told = rows(result)
        self.assertEqual(told["Device/Wireless5/Channel"], ("one-side", "36", "(not in the document)"))
        self.assertEqual(told["Device/UpLinkConnection/ConnType"],
                         ("one-side", "DHCP", "PPPoE (not used: Configurable is 0)"))
        self.assertNotIn("Device/DeviceName", told)
        # The longer names of an older version, and what no router keeps.
        old = str(SOURCE / "examples/settings-1.0.xml")
        told = rows(self.check(diff("version-1.0", old), 8))
        self.assertEqual(told["Device/UpLinkConnection/MTU"], ("one-side", "(no router stores it)", "1492"))
        self.assertNotIn("Device/UpLinkConnection/DSL/VPI", told)

    def test_documents_are_read_as_a_device_reads_them(self):
        document = self.file("entities.xml", change(WirelessName="Sofa &amp; garden", DNS="")
                             .replace("<AcRule>", "<AcRule><Active>1</Active><MAC>x</MAC></AcRule><AcRule>", 1))
        other = self.file("plain.xml", change(WirelessName="Sofa &amp; garden", DNS="8.8.8.8"))
        result = self.check(diff(other, document), 8)
        # The rules go by their addresses: one more in front is one difference.
        self.assertEqual(rows(result), {
            "Device/Wireless2.4/AccessControl/AcRule[x]/Active": ("differs", "(none)", "1")})
        self.assertEqual(rows(self.check(diff(FACTORY, other), 8))["Device/Wireless2.4/WirelessName"],
                         ("differs", "HomeNet", "Sofa & garden"))

    def test_what_cannot_be_compared(self):
        for words, code, text in (
                (("/absent", FACTORY), 7, "cannot read /absent"),
                (("-", "-"), 2, "both sides are standard input"),
                ((FACTORY,), 2, "B is required"),
                (("--router", "http://127.0.0.1:9", FACTORY, FACTORY), 2, "diff takes no --router"),
                (("http://127.0.0.1:9", FACTORY), 4, "nothing answers")):
            self.check(diff(*words), code, out="^$", err=text)
        for content, text in (("", "is empty"), ("<a/>", "it has no root element"),
                              ("{}", "no archive of settings"), ('{"settings": 5}', "no archive of settings"),
                              ('{"settings": {"Device": {"Wireless5": {"AccessControl": {"AcRule": [5]}}}}}',
                               "is damaged"),
                              ("/sys/a = 1\nnonsense", "line 2: expected \"path = text\""),
                              ("include absent", "cannot read")):
            self.check(diff(FACTORY, self.file("bad", content)), 7, out="^$", err=text)

    def test_lint_takes_a_delivered_profile_by_its_name(self):
        document = str(BAD_CHANNEL)
        self.check(kioctl(None, "lint", "--profile", "version-1.0", document), 1, err="[1-9] errors")
        self.check(kioctl(None, "lint", "--profile", FACTORY, document), 1, err="1 errors")
        self.check(kioctl(None, "lint", "--profile", "no-such-router", document), 7, err="cannot read")


class WithRouter(HostCase):
    ARGUMENTS = ("--control", "0")

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        out = pathlib.Path(cls.host.file("out")).read_text()
        cls.control = re.search(r"control port on (http://\S+)", out).group(1)

    def setUp(self):
        self.reset(FACTORY)

    def ask_control(self, path, body=None, method=None):
        request = urllib.request.Request(self.control + path, body and json.dumps(body).encode(), method=method)
        with urllib.request.urlopen(request, timeout=PATIENCE) as reply:
            return reply.read().decode()

    def reset(self, profile):
        self.ask_control("/reset", {"profile": profile})

    def send(self, document):
        self.check(self.run_here("send", "--wait", "--early", "-", text=document))

    def test_a_document_and_the_router_that_has_taken_it(self):
        self.send(CHANGE)
        file = self.host.file("change.xml", CHANGE)
        result = self.check(diff(self.host.url, file),
                            err="no setting differs; 3 not compared, as secrets are not told \\(--secrets\\)")
        self.assertEqual({kind for kind, *_ in rows(result).values()}, {"not-compared"})
        self.check(diff("--secrets", self.host.url, file), out="^$")
        other = self.host.file("other.xml", change(DeviceName="Attic", EncryptionKey="quite-another-key"))
        result = self.check(diff("--secrets", other, self.host.url), 8,
                            err=f"2 settings differ\n  next: kioctl --router {self.host.url} send .*--dry-run")
        self.assertEqual(rows(result), {
            "Device/DeviceName": ("differs", "Attic", "Living room"),
            "Device/Wireless2.4/EncryptionKey": ("secret-differs", "(hidden)", "(hidden)")})

    def test_archives_plain_and_sealed(self):
        secret = {"KIO_PASSPHRASE": "open sesame"}
        plain, sealed = self.host.file("plain.json"), self.host.file("sealed.json")
        self.check(self.run_here("backup", plain))
        self.check(self.run_here("backup", "--secrets", sealed, env=secret))
        self.check(diff(sealed, FACTORY, env=secret), out="^$", err="^no setting differs\n$")
        self.assertEqual(len(rows(self.check(diff(plain, sealed, env=secret)))), 3)
        self.check(diff(sealed, FACTORY, env={"KIO_PASSPHRASE": "x"}), 7, err="the passphrase is another")
        self.send(CHANGE)
        result = self.check(diff(self.host.url, plain), 8, err="next: kioctl --router .* restore .*--dry-run")
        self.assertEqual(rows(result)["Device/DeviceName"], ("differs", "Living room", "Home router"))
        self.assertEqual(json.loads(diff("--json", self.host.url, plain).out)["b"]["kind"], "archive")

    def test_a_terminal_gets_columns_in_which_long_texts_show_where_they_differ(self):
        texts = ["N" * 90 + end for end in ("west wing", "east wing")]
        names = [self.host.file(end, f"/sys/friendlyname = {text}\n/lan/wireless5:1/wlenbl = 1\n"
                                f"/uplink/conntype = {kind}\n/uplink/ip = 192.0.2.{kind.count('i')}")
                 for end, text, kind in zip("ab", texts, ("Static", "DHCP"))]
        terminal = OnTerminal(None, "diff", *names)
        self.assertEqual(terminal.end(), 8)
        self.assertRegex(terminal.seen, r"\x1b\[1mKIND +SETTING +\S+ +\S+\s*\x1b\[0m")
        self.assertRegex(terminal.seen, r"differs +Device/DeviceName +…N+west wing +…N+east wing\r\n")
        self.assertRegex(terminal.seen, r"\x1b\[2mone-side +Device/UpLinkConnection/IP ")
        quiet = OnTerminal(None, "diff", *names, env={"NO_COLOR": "1"})
        self.assertEqual(quiet.end(), 8)
        self.assertNotIn("\x1b[", quiet.seen)
        self.assertIn("\t" + texts[0] + "\t" + texts[1] + "\n", diff(*names).out)

    def captured(self, profile):
        """The nodes of a capture of a router with these settings, and its text."""
        self.reset(profile)
        if profile == FACTORY:
            self.send(CHANGE)
        file = self.host.file(profile + ".captured")
        password = json.loads(self.ask_control("/store/sys/user:1/password"))["text"]
        self.check(self.run_here("capture", "-o", file, password=password), out="^written: ",
                   err=f"next: kiohost --factory-reset --profile {file}\n$")
        text = pathlib.Path(file).read_text()
        lines = [line for line in text.splitlines() if line and not line.startswith("#")]
        return file, text, dict(line.split(" =", 1) for line in lines)

    def test_a_virtual_router_starts_with_what_was_captured_from_another(self):
        # Those of a router that documents and variables do not tell.
        untold = re.compile("/(fwupgradeinfo/(accesskey|fwupgradefn|urlgetcmd)|runtime/.*|uplink/dsl/v[cp]i|"
                            "uplink/dsl/encapsulationmode|uplink/extendersite/survey|"
                            "zentrolinks/(apcloning|fwupgrade|rsshttpport|(temp|script)direcory))$")
        for profile in (FACTORY, "wireless-extender", "version-1.0", "read-only", "longest-texts"):
            with self.subTest(profile=profile):
                file, text, nodes = self.captured(profile)
                found = rows(self.check(diff(self.host.url, file), 8 if profile == "longest-texts" else 0))
                # No setting differs but the secrets; the key of the firmware server is one.
                self.assertLessEqual({kind for kind, *_ in found.values()} - {"not-compared"},
                                     {"secret-differs"} if profile == "longest-texts" else {"one-side"})
                secrets = 0
                for node in json.loads(self.ask_control("/store"))["nodes"]:
                    path, value = node["path"].lower(), node["text"]
                    if re.search("(password|encryptionkey)$", path) and value:
                        secrets += 1
                        self.assertNotIn(value, text)
                        self.assertRegex(text, rf"(?m)^# A stand-in .*\n{path} = .")
                    elif not untold.match(path) and value:
                        self.assertIn(path, nodes)
                        if "$" not in value and '"' not in nodes[path]:
                            self.assertEqual(nodes[path].strip(), value.strip(), path)
                self.assertGreaterEqual(secrets, 3)
                self.start_strictly(file)

    def start_strictly(self, file):
        """Starts a virtual router as far as to its port."""
        folder = tempfile.mkdtemp(prefix="k.", dir="/tmp")
        try:
            done = subprocess.run([KIOHOST, "--store", folder + "/s.db", "--temp-dir", folder, "--strict",
                                   "--profile", file, "--listen", "192.0.2.1"],
                                  capture_output=True, text=True, check=False)
            # What is captured is good: it ends at the address that is not here.
            self.assertEqual((done.returncode, done.stdout), (6, ""), done.stderr)
            self.assertRegex(done.stderr, "^kiohost: cannot listen[^\n]*\n$")
        finally:
            shutil.rmtree(folder)

    def test_what_documents_must_hold_is_found_out_by_dry_runs(self):
        # The settings of a feature that the device does not have may stand in the store all the same.
        self.ask_control("/store/zentrolinks/safetyvyr", {"text": "0"}, "PUT")
        self.ask_control("/store/lan/wireless5:1/configurable", {"text": "0"}, "PUT")
        before = self.ask_control("/store")
        text = self.check(self.run_here("capture")).out
        self.assertIn("# Found out by a dry run.\n/zentrolinks/safetyvyr = 0\n", text)
        self.assertIn("# Found out by a dry run.\n/zentrolinks/easyroaming = 1\n", text)
        self.assertIn("\n/lan/wireless5:1/configurable = 0\n", text)
        self.assertIn("\n/safetyvyr/urldetectenbl = 1\n", text)
        self.assertEqual(self.ask_control("/store"), before)
        self.assertEqual(self.run_here("--json", "capture").json, {"profile": text})

    def test_several_routers_do_not_write_one_file(self):
        file = self.host.file("many")
        for words in (("capture", "-o", file), ("backup", file)):
            self.check(self.run_here("--router", self.host.url, *words), 2,
                       err="several routers would write")
            self.assertFalse(os.path.exists(file))


if __name__ == "__main__":
    unittest.main()
