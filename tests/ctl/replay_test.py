"""Records of sessions: what stands in them, and how they are played."""

import http.client

from support import *

NEW_PASSWORD = "another-one-1"


def record(*entries):
    """A record of these requests: (method, target, status, headers and body of the answer)."""
    lines = [{"record": 1, "model": "M"}]
    for method, target, status, headers, body in entries:
        lines.append({"n": len(lines), "ms": 0, "uptime": 1, "from": "127.0.0.1", "connection": 1,
                      "method": method, "target": target, "headers": {"Accept": "*/*"}, "bytes": 0,
                      "answer": {"ms": 0, "status": status, "headers": headers, "body": body}})
    return "".join(json.dumps(line) + "\n" for line in lines)


class Recorded(Case):
    """A session with two clients, a change of the password, refusals and a stream."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="k.", dir="/tmp")
        cls.file = cls.folder.name + "/record"
        cls.secrets = cls.folder.name + "/secrets"
        cls.host = Host("--record", cls.file, "--record-secrets", cls.secrets)
        cls.play_session(cls.host)
        cls.host.process.terminate()
        cls.host.process.wait()
        cls.text = pathlib.Path(cls.file).read_text()
        cls.lines = [json.loads(line) for line in cls.text.splitlines()]

    @classmethod
    def tearDownClass(cls):
        cls.host.close()
        cls.folder.cleanup()

    @classmethod
    def play_session(cls, host):
        done = [kioctl(host.url, "login"),
                kioctl(host.url, "send", "--wait", "--early", str(SOURCE / "host/demo/change.xml")),
                kioctl(host.url, "set", "rss_DevicePwd", "-", text=NEW_PASSWORD),
                kioctl(host.url, "apply"),
                kioctl(host.url, "get", "rss_DevicePwd"),
                kioctl(host.url, "vars", "--secrets"),
                kioctl(host.url, "login", password=NEW_PASSWORD)]
        assert [one.code for one in done] == [0] * len(done), [one.err for one in done]
        assert kioctl(host.url, "send", str(BAD_CHANNEL)).code == 1
        assert kioctl(host.url, "get", "rss_Upl_LoginPassword").code == 0
        connection = http.client.HTTPConnection("127.0.0.1", host.port)
        archive = None
        for method, target, body, headers in (
                ("POST", "/login", "BKey=00000000", {}), ("GET", "/backup?secrets=1", None, {}),
                ("POST", "/restore", "archive", {}), ("PUT", "/vars/rss_DeviceName", b"\xff\x01", {}),
                ("POST", "/vars?separator=;", "rss_DevicePwd=xy;rss_DeviceName=Loft", {}),
                ("POST", "/settings", "x", {"If-Match": '"none"'}), ("POST", "/settings", b"\0", {}),
                ("POST", "/settings", "x" * 70000, {}), ("HEAD", "/device", None, {}),
                ("HEAD", "/events", None, {}), ("OPTIONS", "*", None, {}), ("GET", "/no%20way?a=b", None, {})):
            connection.request(method, target, archive if body == "archive" else body, headers)
            text = connection.getresponse().read()
            archive = text if target.startswith("/backup") else archive
        other = http.client.HTTPConnection("127.0.0.1", host.port, source_address=("127.0.0.7", 0))
        other.request("GET", "/vars")
        assert other.getresponse().status == 401
        other.close()
        connection.close()

    def replay(self, *arguments, host=(), **more):
        """Runs kiohost --replay on a new store."""
        with tempfile.TemporaryDirectory(prefix="k.", dir="/tmp") as folder:
            done = subprocess.run(
                [KIOHOST, "--store", folder + "/s.db", "--temp-dir", folder, "--port", "0", "--script-dir",
                 self.host.dir + "/scripts", *host, "--replay", self.file, *arguments],
                text=True, capture_output=True, timeout=120, check=False, env=environment(None, more))
        return Result(done.returncode, done.stdout, done.stderr)

    def test_no_secret_stands_in_it(self):
        for secret in (PASSWORD, NEW_PASSWORD, "correct-horse", "kioAppKey=:", "=xy", "00000000"):
            self.assertNotIn(secret, self.text)
        self.assertIn(NEW_PASSWORD, pathlib.Path(self.secrets).read_text())
        for file in (self.file, self.secrets):
            self.assertEqual(os.stat(file).st_mode & 0o777, 0o600)
        requests = {line["target"]: line for line in self.lines[1:]}
        self.assertEqual(requests["/vars/rss_DevicePwd"]["answer"]["body"],
                         requests["/login"].get("password") or "********(4)")
        logins = [line.get("password") for line in self.lines if line.get("target") == "/login"]
        self.assertEqual([logins[0], logins[-1]], ["********(1)", None])
        self.assertEqual(requests["/vars/rss_DeviceName"]["base64"], "/wE=")
        self.assertEqual(requests["/no%20way?a=b"]["answer"]["status"], 404)
        self.assertEqual(requests["/vars"]["from"], "127.0.0.7")

    def test_it_is_played_against_a_router_of_its_own(self):
        played = self.replay("--replay-secrets", self.secrets)
        # A body with a NUL byte is not kept.
        self.check(played, out=f"^{len(self.lines) - 2} answers are as they were recorded",
                   err="is left out: its body was not recorded")

    def test_the_first_answer_that_differs_is_told(self):
        played = self.replay("--replay-secrets", self.secrets, 
                             host=("--set", "/lan/wireless2.4:1/channellist=0"))
        self.check(played, 1, err=r"answer \d differs, to POST /settings: the status was recorded as 200, and is 422\n"
                                  r"  next: line \d of .*record has")

    def test_a_secret_that_is_not_given_ends_it(self):
        self.check(self.replay(KIO_PASSWORD=PASSWORD), 2, err=r"a password or key that it calls \*{8}\(\d")
        self.check(self.replay(KIO_PASSWORD="wrong"), 1, err="to POST /login: the status was recorded as 200")
        self.check(self.replay(), 3, err="the administrator's password")

    def test_a_router_that_is_not_there(self):
        self.check(self.replay("--against", "http://127.0.0.1:9", "--replay-secrets", self.secrets), 6)
        self.assertEqual(self.replay(host=("--profile", "none")).code, 4)

    def test_nothing_is_written_over(self):
        done = subprocess.run([KIOHOST, "--store", self.folder.name + "/s.db", "--temp-dir", self.folder.name,
                               "--script-dir", self.host.dir + "/scripts", "--port", "0", "--record", self.file],
                              text=True, capture_output=True, timeout=60, check=False)
        self.assertEqual((done.returncode, pathlib.Path(self.file).read_text()), (5, self.text))
        self.assertIn("holds something already", done.stderr)

    def test_a_full_disk_costs_no_answer(self):
        host = Host("--record", "/dev/full", "--open")
        self.addCleanup(host.close)
        for _ in range(2):
            self.check(kioctl(host.url, "device"))
        said = pathlib.Path(host.dir, "out").read_text()
        self.assertEqual(said.count("cannot write /dev/full: No space left on device"), 1, said)


class Compared(Case):
    """What counts as the same, with routers that say what they are told."""

    JSON = {"Content-Type": "application/json"}

    def replay(self, recorded, *now, **more):
        """Plays a record of GET requests; the router gives these bodies, the last again and again."""
        rest, asked = list(now), []

        def answer(method, path, _):
            asked.append(path)
            return 200, self.JSON, rest.pop(0) if len(rest) > 1 else rest[0]

        server = Told(answer)
        self.addCleanup(server.close)
        with tempfile.NamedTemporaryFile("w", prefix="k.", dir="/tmp") as file:
            file.write(record(*(("GET", target, 200, self.JSON, body) for target, body in recorded)))
            file.flush()
            return self.check(kioctl(server.url, "--json", "replay", "--patience", "0", file.name), **more), asked

    def test_ids_are_the_same_ones_everywhere(self):
        old, new = "0123456789abcdef", "fedcba9876543210"
        record_ = [("/a", json.dumps({"id": old})), ("/vars?changed-since=" + old, json.dumps([f"x-{old}."]))]
        result, asked = self.replay(record_, json.dumps({"id": new}), json.dumps([f"x-{new}."]))
        self.assertEqual((result.json["same"], asked), (2, ["/a", "/vars?changed-since=" + new]))
        result, _ = self.replay(record_, json.dumps({"id": new}), json.dumps(["x-0000000000000000."]), code=1)
        self.assertEqual(result.json["error"]["where"], "the body at /0")

    def test_what_is_of_the_moment_may_be_another(self):
        old = {"uptime": 1, "state": "busy", "a": {"outcome": "applied", "secondsLeft": 7}, "b": [1, None]}
        new = {"b": [1, None], "a": {"secondsLeft": 1, "outcome": "in-force"}, "uptime": 9, "state": "ready"}
        self.replay([("/", json.dumps(old))], json.dumps(new))
        for path, other in (("/uptime", {**new, "uptime": "9"}), ("/b/1", {**new, "b": [1]}),
                            ("/b/1", {**new, "b": [1, 2]}), ("/c", {**new, "c": None}),
                            ("/a/outcome", {**new, "a": {"secondsLeft": 1, "outcome": "failed"}})):
            result, _ = self.replay([("/", json.dumps(old))], json.dumps(other), code=1)
            self.assertEqual(result.json["error"]["where"], "the body at " + path)

    def test_marks_stand_for_any_text(self):
        old = json.dumps(["a ********(1) b ********(2)", "********(1)"])
        self.replay([("/", old)], json.dumps(["a x y b ", "z"]))
        for other in (["a x y c", "z"], ["b x b y", "z"], ["a b y", 1]):
            self.replay([("/", old)], json.dumps(other), code=1)

    def test_a_record_that_is_none(self):
        for text in ("", "x\n", '{"record":2}\n', '{"record":1}\n{"n":1}\n'):
            with tempfile.NamedTemporaryFile("w", prefix="k.", dir="/tmp") as file:
                file.write(text)
                file.flush()
                self.check(kioctl("http://127.0.0.1:9", "replay", file.name), 2, err=r"line \d of the record")


if __name__ == "__main__":
    unittest.main()
