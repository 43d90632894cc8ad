"""kioctl conform: its command line, output and reports, and what it leaves behind."""

import xml.etree.ElementTree

from conform_support import *


def without_variables(method, path, headers, body, pass_on):
    """A router that has no variables."""
    rooms = ("/vars", "/actions")
    if path.startswith(rooms):
        return 404, {"Content-Type": "text/plain"}, b"there is no such resource\n"
    status, said, data = pass_on(method, path, headers, body)
    if path == "/" and status == 200:
        index = json.loads(data)
        index["resources"] = [one for one in index["resources"] if not one["path"].startswith(rooms)]
        data = json.dumps(index).encode()
    return status, said, data


class Command(Conform):
    def setUp(self):
        self.bench.reset()

    def order(self, result):
        return re.findall(r"(?m)^ok \d+ - (\S+)", result.out)

    def test_the_list_names_each_case_once_with_what_is_promised(self):
        listed = self.check(kioctl(None, "--json", "conform", "--list", password=None)).json
        names = [case["name"] for case in listed]
        self.assertEqual(len(set(names)), len(names))
        self.assertGreaterEqual(len(names), 80)
        groups = {name.split(".")[0] for name in names}
        self.assertLessEqual({"documents", "codes", "waits", "variables", "batches", "firmware", "login",
                              "limits", "robustness"}, groups)
        for case in listed:
            self.assertRegex(case["name"], r"^[a-z]+\.[a-z0-9-]+$")
            self.assertRegex(case["promise"], r"^\S.*\.$")
        chosen = self.check(kioctl(None, "conform", "--list", "waits", "codes.no-*", password=None)).out
        self.assertRegex(chosen, r"(?m)^waits\.ready-at-rest\treads\t")
        self.assertRegex(chosen, r"(?m)^codes\.no-name\tchanges\t")
        self.assertNotIn("device.", chosen)
        self.check(kioctl(None, "conform", "--list", "wait"), 2, err="no case or group fits wait")

    def test_the_router_may_be_an_operand(self):
        result = kioctl(None, "conform", "--yes", self.bench.url, "device.boot-id-stays")
        self.assertEqual(self.order(self.check(result)), ["device.boot-id-stays"])
        self.check(kioctl("http://127.0.0.1:9", "conform", "--yes", self.bench.url), 2,
                   err="one router at a time")
        self.check(kioctl(None, "conform", "--yes", "device"), 2, err="no router is named")
        server = Told(lambda *_: (200, {}, "{}"))
        self.check(kioctl(server.url, "conform", "--yes"), 4)
        server.close()
        self.check(kioctl(self.bench.url, "conform", "--yes", password="wrong"), 4, err="login is answered with 401")

    def test_nothing_is_tried_unless_somebody_agrees(self):
        self.check(self.conform("documents", agreed=False), 2, out="^$",
                   err="(?s)cases change settings.*nobody has agreed")
        for answer, code in (("n\n", 2), ("y\n", 0)):
            terminal = OnTerminal(self.bench.url, "conform", "device.boot-id-stays", password=self.bench.password)
            self.assertTrue(terminal.see("Go on? [y/N]"))
            self.assertIn("this machine is logged out", terminal.seen)
            terminal.type(answer)
            self.assertEqual(terminal.end(), code, terminal.seen)
        self.assertRegex(terminal.seen, "passed +device.boot-id-stays")

    def test_a_seed_decides_the_order(self):
        listed, first, again, other = (self.order(self.check(self.conform("device", *seed))) for seed in
                                       ((), ("--seed", "1"), ("--seed", "1"), ("--seed", "2")))
        self.assertEqual(first, again)
        self.assertEqual(sorted(first), sorted(listed))
        self.assertEqual(len({tuple(order) for order in (listed, first, other)}), 3)

    def test_what_a_router_cannot_do_is_skipped(self):
        result = self.check(self.planted(without_variables, "variables", "batches", "documents.name-is-applied"))
        self.assertEqual(len(re.findall(r"# SKIP the router does not offer \S+ /(?:vars|actions)", result.out)), 32)
        result = self.check(kioctl(self.bench.url, "conform", "--yes", "login.lapses"), out="# SKIP 600 s must pass")
        drops = text_of("/settings.*", '"drops": false', '"drops": true')
        name = "documents.name-is-applied"
        self.check(self.planted(drops, name), out=r"# SKIP the link of this machine would drop \(host\)")
        self.assertNotIn("SKIP", self.check(self.planted(drops, name, arguments=["--disruptive"])).out)

    def test_deviations_that_are_agreed_on(self):
        nameless = text_of("/nothing-of-that-name", "(?s).+", "")
        agreed = self.bench.file("agreed", "# of this model\n\ninterface.nothing-is-absent: no texts yet\n"
                                           "device.boot-id-stays: it changed in the first model\n")
        cases = ("interface.nothing-is-absent", "device.boot-id-stays", "--deviations", agreed)
        result = self.check(self.planted(nameless, *cases), err="the router conforms, with deviations: "
                                                                "1 passed, 1 deviate as agreed")
        self.assertRegex(result.out, r"(?m)^not ok 1 - interface.nothing-is-absent # TODO no texts yet$"
                         if "not ok 1" in result.out else
                         r"(?m)^not ok 2 - interface.nothing-is-absent # TODO no texts yet$")
        self.assertIn("# device.boot-id-stays: the deviation no longer happens", result.out)
        self.assertIn("take it out of", result.err)
        for line, told in (("device.nothing: x", "agreed:1: there is no case device.nothing"),
                           ("device.boot-id-stays:", "agreed:1: device.boot-id-stays has no reason"),
                           ("device.boot-id-stays", "has no reason"),
                           ("device.boot-id-stays: a\ndevice.boot-id-stays: b", "agreed:2: .* twice")):
            agreed = self.bench.file("agreed", line + "\n")
            self.check(self.conform("device", "--deviations", agreed), 2, err=told)

    def test_reports(self):
        junit, page = self.bench.file("junit.xml"), self.bench.file("page.html")
        agreed = self.bench.file("agreed", "errors.are-lines: as agreed\n")
        result = self.planted(text_of("/nothing-of-that-name", "(?s).+", ""), "interface", "errors.are-lines",
                              arguments=["--junit", junit, "--report", page, "--deviations", agreed])
        self.check(result, 1)
        self.assertEqual(failed(result), ["interface.nothing-is-absent"])
        suites = {suite.get("name"): suite for suite in xml.etree.ElementTree.parse(junit).getroot()}
        self.assertEqual((suites["interface"].get("failures"), suites["errors"].get("skipped")), ("1", "1"))
        one = suites["interface"].find("testcase[@name='nothing-is-absent']")
        self.assertIn("a line of text was expected", one.find("failure").get("message"))
        self.assertIn("> GET /nothing-of-that-name", one.find("failure").text)
        text = pathlib.Path(page).read_text()
        self.assertIn('<tr id="interface.nothing-is-absent">', text)
        self.assertIn("Agreed deviation: as agreed", text)
        self.assertNotRegex(text, r"(src|href)=")
        failure = self.planted(text_of("/nothing-of-that-name", "(?s).+", ""), "interface.nothing-is-absent",
                               arguments=["--json"])
        told = json.loads(failure.out)
        self.assertEqual((told["failed"], told["cases"][0]["outcome"]), (1, "failed"))

    def test_no_output_tells_a_secret(self):
        page = self.bench.file("page.html")
        result = self.planted(text_of("/settings.*", '"result": 0', '"result": 4'), "documents", "backup",
                              arguments=["--report", page])
        self.assertNotEqual(result.code, 0)
        for text in (result.out, result.err, pathlib.Path(page).read_text() if os.path.exists(page) else ""):
            self.assertNotIn(PASSWORD, text)
            self.assertNotIn("correct-horse", text)

    def test_ctrl_c_restores_the_settings(self):
        before = self.bench.nodes()
        sent, held = threading.Event(), threading.Event()

        def fault(method, path, headers, body, pass_on):
            answer = pass_on(method, path, headers, body)
            if (method, path) == ("POST", "/settings"):
                sent.set()
                held.wait(PATIENCE)
            return answer

        server = Planted(self.bench, fault)
        terminal = OnTerminal(server.url, "conform", "--yes", "documents.name-is-applied",
                              password=self.bench.password)
        self.assertTrue(sent.wait(PATIENCE))
        self.assertNotEqual(self.bench.nodes(), before)
        terminal.type("\x03")
        self.assertTrue(terminal.see("^C"))
        held.set()
        self.assertEqual(terminal.end(), 130, terminal.seen)
        self.assertEqual(self.bench.nodes(), before)
        server.close()

    def test_settings_that_cannot_be_restored_are_kept_in_a_file(self):
        def fault(method, path, headers, body, pass_on):
            if (method, path) == ("POST", "/restore"):
                return 500, {"Content-Type": "text/plain"}, b"the disk is full\n"
            return pass_on(method, path, headers, body)

        archive = ask(self.bench.url, "GET", "/backup?secrets=1")[2] if self.bench.log_in(self.bench.url) else b""
        result = self.planted(fault, "documents.name-is-applied")
        self.check(result, 6, err="(?s)were not restored: .*kioctl --router .* restore conform-settings.json")
        self.assertEqual(pathlib.Path("conform-settings.json").read_bytes(), archive)
        self.assertEqual(os.stat("conform-settings.json").st_mode & 0o777, 0o600)


if __name__ == "__main__":
    unittest.main()
