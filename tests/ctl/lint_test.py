"""lint and schema: a corpus of faulty documents, the forms of the report, and a comparison with a host."""

import random

from support import *

EXPECTED = pathlib.Path(__file__).with_name("lint_expected.txt")
PROFILES = SOURCE / "host/profiles"

# Values that a device refuses, and the element's path. Each is a fault of its own.
BAD_VALUES = [
    ("Device/DeviceName", "N" * 33), ("Device/DeviceName", ""), ("Device/DevicePwd", "abc"),
    ("Device/RouterEnbl", "7"),
    ("Device/UpLinkConnection/IP", "192.0.2.300"), ("Device/UpLinkConnection/IP", ""),
    ("Device/UpLinkConnection/NetMask", "255.0.255.0"), ("Device/UpLinkConnection/Gateway", "router"),
    ("Device/UpLinkConnection/DNS", "8.8.8"),
    ("Device/Wireless2.4/WlEnbl", "4"), ("Device/Wireless2.4/WlSchedule", "9"),
    ("Device/Wireless2.4/WirelessBSSID", ""), ("Device/Wireless2.4/WirelessName", ""),
    ("Device/Wireless2.4/WirelessName", "W" * 33), ("Device/Wireless2.4/EncryptionMode", "WPA22"),
    ("Device/Wireless2.4/EncryptionType", "AESS"), ("Device/Wireless2.4/EncryptionKey", "short"),
    ("Device/Wireless2.4/Channel", "99"), ("Device/Wireless2.4/AccessControl/WlAcEnbl", "5"),
    ("Device/Wireless2.4/AccessControl/WlAcMode", "2"),
    ("Device/Wireless2.4/AccessControl/AcRule/Active", "3"),
    ("Device/Wireless2.4/AccessControl/AcRule/MAC", ""),
    ("Device/Wireless5/WlEnbl", "-1"), ("Device/Wireless5/WirelessName", ""),
    ("Device/Wireless5/EncryptionKey", "7chars_"), ("Device/Wireless5/Channel", "1"),
    ("Device/Wireless5/AccessControl/WlAcMode", "9"), ("Device/SafetyVyr/SafetyVyrEnbl", "2"),
    ("Device/SafetyVyr/UrlDetectEnbl", "-5"), ("Device/SafetyVyr/ToolRecommendEnbl", "3"),
]
# Elements that must be there, and are left out or misspelt.
NEEDED = [
    "Device/DeviceName", "Device/RouterEnbl", "Device/UpLinkConnection/ConnType",
    "Device/UpLinkConnection/Gateway", "Device/EasyRoaming", "Device/Wireless2.4/WlSchedule",
    "Device/Wireless2.4/Channel", "Device/Wireless2.4/AccessControl/AcRule/MAC",
    "Device/Wireless5/WirelessBSSID", "Device/Wireless5/EncryptionType",
    "Device/SafetyVyr/UrlDetectEnbl", "Device/SafetyVyr/SafetyNotifyEnbl",
]
# Blocks that are left out with all that they hold.
BLOCKS = ["Device/Wireless5", "Device/Wireless2.4/AccessControl", "Device/SafetyVyr",
          "Device/UpLinkConnection"]


def place(document, path):
    """Where the first element of a path begins and ends, tags included."""
    begin, end = 0, len(document)
    for name in path.split("/"):
        begin = document.index(f"<{name}>", begin, end)
        end = document.index(f"</{name}>", begin, end) + len(name) + 3
    return begin, end


def with_value(document, path, value):
    name = path.split("/")[-1]
    begin, end = place(document, path)
    return document[:begin] + f"<{name}>{value}</{name}>" + document[end:]


def without(document, path):
    begin, end = place(document, path)
    return document[:begin] + document[end:]


def misspelt(document, path):
    name = path.split("/")[-1]
    begin, end = place(document, path)
    return document[:begin] + document[begin:end].replace(name, name[:-1] + "q") + document[end:]


def faulty(seed):
    """A document with faults of its own, and the paths of these."""
    chance = random.Random(seed)
    document, paths = CHANGE, set()
    for _ in range(chance.randint(1, 5)):
        if chance.random() < 0.6:
            path, value = chance.choice(BAD_VALUES)
            make = with_value
        else:
            path, value = chance.choice(NEEDED), None
            make = chance.choice((without, misspelt))
            if chance.random() < 0.2:
                path, make = chance.choice(BLOCKS), without
        # What depends on another fault would not be one of its own.
        if any(path.startswith(other) or other.startswith(path) for other in paths):
            continue
        if path.split("/")[-1] in ("EncryptionMode", "EncryptionType", "EncryptionKey") and any(
                other.split("/")[-1].startswith("Encryption") for other in paths):
            continue
        document = make(document, path, value) if value is not None else make(document, path)
        paths.add(path)
    return document, paths


def lint(document, *arguments, **options):
    return kioctl(None, "lint", *arguments, "-", text=document, **options)


def findings(document, *arguments):
    result = lint(document, "--json", *arguments)
    return [json.loads(line) for line in result.out.splitlines()], result


def summary(found):
    return [f"{one['line']}:{one['column']} {one['level']} {one['id']} {one['path']}; {one['help']}"
            for one in found]


class Lint(Case):
    def test_a_good_document_has_no_findings(self):
        self.check(lint(CHANGE), out="^$", err="^-: 0 errors, 0 warnings\n$")
        for name in PROFILES.glob("*.profile"):
            found, result = findings("<root></root>", "--profile", str(name))
            self.assertEqual((result.code, bool(found)), (1, True), name)

    def test_the_corpus(self):
        told = []
        for seed in range(100):
            document, paths = faulty(seed)
            found, result = findings(document)
            told.append(f"# {seed}: {' '.join(sorted(paths))}")
            told += summary(found)
            with self.subTest(seed=seed):
                # Every fault that was made is found, and no other.
                errors = {one["path"] for one in found if one["level"] == "error"}
                self.assertEqual(errors, paths, summary(found))
                self.assertEqual(result.code, 1)
        if os.environ.get("KIO_UPDATE"):
            EXPECTED.write_text("\n".join(told) + "\n")
        self.assertEqual(told, EXPECTED.read_text().splitlines())

    def test_the_text_is_that_of_a_compiler(self):
        document = with_value(CHANGE, "Device/Wireless2.4/EncryptionMode", "WPA22")
        document = with_value(document, "Device/UpLinkConnection/IP", "192.0.2.300")
        result = self.check(lint(document), 1, err="next: mend the errors")
        self.assertEqual(result.out, """\
-:14:8: error: IP cannot be "192.0.2.300" [invalid-value]
     <IP>192.0.2.300</IP>
         ^~~~~~~~~~~
  note: the device reports it as Device/Uplink/IP
  note: Device/UpLinkConnection/IP takes an IPv4 address of a host
-:25:20: error: EncryptionMode cannot be "WPA22" [invalid-value]
     <EncryptionMode>WPA22</EncryptionMode>
                     ^~~~~
  note: Device/Wireless2.4/EncryptionMode takes one of: None WEP WPA WPAWPA2 WPA2
  help: did you mean WPA2?
""")
        self.assertIn("\x1b[1;31merror: ", lint(document, "--color", "always").out)

    def test_secrets_are_not_shown(self):
        document = with_value(CHANGE, "Device/DevicePwd", "abc")
        for form in ("text", "json", "sarif", "github"):
            result = self.check(lint(document, "--form", form), 1)
            self.assertNotIn("abc", result.out)

    def test_the_other_forms(self):
        document = misspelt(CHANGE, "Device/Wireless2.4/Channel")
        sarif = json.loads(self.check(lint(document, "--form", "sarif"), 1).out)
        self.assertEqual(sarif["version"], "2.1.0")
        run = sarif["runs"][0]
        self.assertEqual(run["tool"]["driver"]["name"], "kioctl lint")
        result = run["results"][0]
        self.assertEqual((result["ruleId"], result["level"]), ("missing-element", "error"))
        location = result["locations"][0]["physicalLocation"]
        self.assertEqual(location["region"]["startLine"], 28)
        fix = result["fixes"][0]["artifactChanges"][0]["replacements"][0]
        self.assertEqual(fix["insertedContent"]["text"], "<Channel>6</Channel>")
        self.check(lint(document, "--form", "github"), 1,
                   out="^::error file=-,line=28,col=5,title=missing-element::the element Channel is missing")

    def test_fixes_are_made_where_one_change_is_likely(self):
        with tempfile.TemporaryDirectory(prefix="k.") as folder:
            file = pathlib.Path(folder, "d.xml")
            document = with_value(CHANGE, "Device/Wireless2.4/EncryptionMode", "WPA22")
            document = document.replace("<Channel>36", '<Channel unit="1">36')
            document = misspelt(document, "Device/SafetyVyr")
            file.write_text(document)
            self.check(kioctl(None, "lint", "--fix", str(file)), err="4 fixed\n.*0 errors")
            self.assertEqual(file.read_text(), CHANGE)
            # Into the only block that lacks it, be that before it or behind.
            for path, block in (("Device/UpLinkConnection/DNS", "SafetyVyr"),
                                ("Device/SafetyVyr/UrlDetectEnbl", "Wireless2.4")):
                begin, end = place(CHANGE, path)
                element = CHANGE[begin:end]
                line = CHANGE[CHANGE.rindex("\n", 0, begin):end]
                file.write_text(CHANGE.replace(line, "", 1).replace(f"<{block}>", f"<{block}>{element}", 1))
                self.check(kioctl(None, "lint", "--fix", str(file)), err="1 fixed\n.*0 errors, 0 warnings")
                self.check(kioctl(None, "diff", "--json", str(file), "-", text=CHANGE))
                self.assertIn(f"\n   {element}\n", file.read_text())
            begin, end = place(CHANGE, "Device/UpLinkConnection/DNS")
            file.write_text(CHANGE[begin:end] + "\n" + without(CHANGE, "Device/UpLinkConnection/DNS"))
            self.check(kioctl(None, "lint", "--fix", str(file)), err="1 fixed\n.*0 errors, 0 warnings")
            # Among broken tags nobody knows what is meant.
            document = CHANGE.replace("2</EncryptionMode>", "/EncryptionMode>", 1).replace("</MAC>", "</MA", 1)
            file.write_text(document)
            self.check(kioctl(None, "lint", "--fix", str(file)), 1, err="0 fixed")
            self.assertEqual(file.read_text(), document)
            # Either radio may be meant.
            document = without(without(CHANGE, "Device/Wireless2.4/Channel"), "Device/Wireless5/Channel")
            document = document.replace("<SafetyVyr>", "<SafetyVyr><Channel>1</Channel>")
            file.write_text(document)
            self.check(kioctl(None, "lint", "--fix", str(file)), 1, err="0 fixed")
            self.assertEqual(file.read_text(), document)
            file.write_text(with_value(CHANGE, "Device/UpLinkConnection/IP", "x"))
            self.check(kioctl(None, "lint", "--fix", str(file)), 1, err="0 fixed")

    def test_what_is_accepted_but_hardly_meant_is_a_warning(self):
        rules = "<AcRule><Active>1</Active><MAC>02:00:5E:BB:00:01</MAC></AcRule>"
        long_name = "Device/UpLinkConnection"
        cases = {
            "unknown-element": CHANGE.replace("<DeviceName>", "<Colour>red</Colour><DeviceName>"),
            "misplaced-element": CHANGE.replace("<Wireless5>", "<Wireless5><IP>192.0.2.1</IP>"),
            "nesting-unseen": CHANGE.replace("<RouterEnbl>1", "<RouterEnbl>1</RouterEnbl><RouterEnbl>0"),
            "plain-tags-only": CHANGE.replace("<SafetyVyr>", "<SafetyVyr a='1'/><SafetyVyr>"),
            "rules-beyond-the-fortieth-unread": CHANGE.replace("<AcRule>", rules * 40 + "<AcRule>", 1),
            "value-is-cut": with_value(CHANGE, "Device/EasyRoaming", "x" * 128),
            "entity-cut-stays-raw": with_value(CHANGE, "Device/EasyRoaming", "x" * 125 + "&amp;"),
            "radio-key-of-31": with_value(CHANGE, "Device/Wireless5/EncryptionKey", "k" * 40),
            "channel-of-three-characters": with_value(CHANGE, "Device/Wireless5/Channel", "36,40"),
            "not-read": CHANGE.replace("<ConnType>", "<LoginUserName>me</LoginUserName><ConnType>"),
            "configurable-zero-leaves-out": CHANGE.replace(
                "<UpLinkConnection>", "<UpLinkConnection><Configurable>0</Configurable>"),
            "default-name-server": with_value(CHANGE, long_name + "/DNS", ""),
            "empty-block-reaches-on": CHANGE.replace(
                "<Wireless5>", "<Wireless5><AccessControl/>"),
        }
        for name, document in cases.items():
            with self.subTest(warning=name):
                found, _ = findings(document)
                self.assertIn(("warning", name), [(one["level"], one["id"]) for one in found],
                              summary(found))

    def test_what_is_no_document(self):
        self.check(lint("hello"), 1, out=":1:1: error: the document has no root element")
        self.check(lint(""), 1)
        self.check(kioctl(None, "lint", "/absent"), 7)
        self.check(kioctl(None, "lint", "--profile", "/absent", "-", text=CHANGE), 7)
        self.check(lint(with_value(CHANGE, "specVersion/minor", "0")), 1, out="help: write 1\n")

    def test_another_device_judges_otherwise(self):
        profile = str(PROFILES / "locked-switches.profile")
        own, _ = findings(CHANGE)
        other, _ = findings(CHANGE, "--profile", profile)
        self.assertNotEqual(summary(own), summary(other))


class WithHost(HostCase):
    ARGUMENTS = ("--open",)

    def test_a_router_judges_by_dry_runs(self):
        for seed in (3, 7, 35):
            document, paths = faulty(seed)
            result = kioctl(self.host.url, "--json", "lint", "-", text=document)
            self.check(result, 1)
            found = [json.loads(line) for line in result.out.splitlines()]
            self.assertEqual({one["path"] for one in found if one["level"] == "error"}, paths)
        self.check(kioctl(self.host.url, "lint", "-", text=CHANGE), out="^$")

    def test_lint_and_the_host_agree_on_random_documents(self):
        verdicts = []
        for seed in range(1000, 1060):
            chance = random.Random(seed)
            document = CHANGE
            for _ in range(chance.randint(0, 2)):
                path = chance.choice(BAD_VALUES)[0]
                value = chance.choice(["0", "1", "6", "40", "x", "abcdefgh", "192.0.2.9", "255.255.0.0", "",
                                       "AES", "WPA", "N" * 32])
                document = with_value(document, path, value)
            if chance.random() < 0.2:
                path = chance.choice(NEEDED)
                document = chance.choice((without, misspelt))(document, path)
            host = kioctl(self.host.url, "send", "--dry-run", "-", text=document).code
            verdicts.append(host)
            self.assertEqual(lint(document).code, host, f"seed {seed}\n{document}")
        # Both sides of the comparison have been there.
        self.assertGreater(verdicts.count(0), 10)
        self.assertGreater(verdicts.count(1), 10)


class Schema(Case):
    def validates(self, grammar, document):
        with tempfile.TemporaryDirectory(prefix="k.") as folder:
            schema, file = pathlib.Path(folder, "s.rng"), pathlib.Path(folder, "d.xml")
            schema.write_text(grammar)
            file.write_text(document)
            done = subprocess.run(["xmllint", "--noout", "--relaxng", str(schema), str(file)],
                                  capture_output=True, text=True, check=False)
            self.assertIn(done.returncode, (0, 3), done.stderr)
            return done.returncode == 0

    def test_relax_ng(self):
        grammar = self.check(kioctl(None, "schema")).out
        self.assertTrue(self.validates(grammar, CHANGE))
        self.assertTrue(self.validates(grammar, change(EncryptionMode="wpa2")))
        for document in (with_value(CHANGE, "Device/Wireless2.4/EncryptionMode", "WPA22"),
                         with_value(CHANGE, "Device/Wireless2.4/WlSchedule", "9"),
                         misspelt(CHANGE, "Device/Wireless2.4/Channel"),
                         without(CHANGE, "Device/Wireless2.4/WlSchedule"),
                         CHANGE.replace("<SafetyVyr>", "<SafetyVyr><IP>192.0.2.1</IP>")):
            self.assertFalse(self.validates(grammar, document))
        old = self.check(kioctl(None, "schema", "relaxng", "--spec-version", "1.0")).out
        sample = (SOURCE / "examples/settings-1.0.xml").read_text()
        self.assertTrue(self.validates(old, sample))
        self.assertFalse(self.validates(old, CHANGE))
        firmware = self.check(kioctl(None, "schema", "--firmware-list")).out
        self.assertTrue(self.validates(firmware, (SOURCE / "host/demo/firmware-list.xml").read_text()))
        self.assertFalse(self.validates(firmware, CHANGE))

    def test_json(self):
        rows = json.loads(self.check(kioctl(None, "schema", "json")).out)
        self.assertEqual(rows["document"], "settings 1.1")
        channel = [row for row in rows["elements"] if row["path"] == "Device/Wireless5/Channel"]
        self.assertEqual(channel[0]["variable"], "rss_Wl5_Channel")


if __name__ == "__main__":
    unittest.main()
