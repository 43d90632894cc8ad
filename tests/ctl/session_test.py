"""Logging in, the terminal, the forms of the output, exit codes, completion and the manual page."""

import re

from support import *


class Session(HostCase):
    def log_out(self):
        self.check(self.run_here("logout", password=None), out="^logged out\n$")

    def test_a_command_logs_in_by_itself_with_the_password_of_the_environment(self):
        self.log_out()
        self.check(self.run_here("get", "rss_DeviceModel"), out="^DR-2400\n$")
        # The login is the address's: nothing has to be kept.
        self.check(self.run_here("get", "rss_DeviceModel", password=None), out="^DR-2400\n$")

    def test_without_a_password_and_a_terminal_it_says_how_to_give_one(self):
        self.log_out()
        self.check(self.run_here("get", "rss_DeviceModel", password=None), 3,
                   out="^$", err="wants a login\n  next: set KIO_PASSWORD")

    def test_a_wrong_password_is_told(self):
        self.log_out()
        self.check(self.run_here("login", password="wrong"), 3, err="the password is not that of")
        failure = self.run_here("--json", "login", password="wrong")
        self.check(failure, 3)
        self.assertEqual(failure.json["error"]["kind"], "not-logged-in")
        self.check(self.run_here("login"), out="^logged in\n$")

    def test_a_password_file_must_be_for_its_owner_alone(self):
        self.log_out()
        file = self.host.file("password", PASSWORD + "\n")
        os.chmod(file, 0o640)
        self.check(self.run_here("--password-file", file, "login", password=None), 7,
                   err=f"others can read .*\n  next: type: chmod 600 {file}")
        os.chmod(file, 0o600)
        # It goes before the environment.
        self.check(self.run_here("--password-file", file, "login", password="wrong"))
        self.check(self.run_here("--password-file", file + ".not", "login"), 7, err="cannot be read")

    def test_a_prompt_shows_nothing_of_the_password(self):
        self.log_out()
        terminal = OnTerminal(self.host.url, "get", "rss_DeviceModel")
        self.assertTrue(terminal.see("Administrator password of " + self.host.url + ": "))
        terminal.type(PASSWORD + "\n")
        self.assertTrue(terminal.see("DR-2400"))
        self.assertEqual(terminal.end(), 0)
        self.assertNotIn(PASSWORD, terminal.seen)

    def test_ctrl_c_at_the_prompt_ends_and_restores_the_terminal(self):
        self.log_out()
        terminal = OnTerminal(self.host.url, "get", "rss_DeviceModel")
        self.assertTrue(terminal.see("password of"))
        terminal.type("\x03")
        self.assertTrue(terminal.see("interrupted"))
        self.assertEqual(terminal.end(), 130)

    def test_device_needs_no_login_and_is_a_table_on_a_terminal(self):
        self.log_out()
        plain = self.check(self.run_here("device", password=None), out=r"(?m)^model\tDR-2400$")
        self.assertNotIn("\x1b", plain.out)
        terminal = OnTerminal(self.host.url, "device")
        self.assertEqual(terminal.end(), 0)
        self.assertRegex(terminal.seen, r"\x1b\[1mMEMBER +VALUE")
        self.assertRegex(terminal.seen, r"model +DR-2400")
        quiet = OnTerminal(self.host.url, "device", env={"NO_COLOR": "1"})
        self.assertEqual(quiet.end(), 0)
        self.assertNotIn("\x1b[1m", quiet.seen)
        self.check(self.run_here("--color", "always", "login"), out="\x1b\\[32mlogged in")
        answer = self.check(self.run_here("--json", "device")).json
        self.assertEqual(answer["model"], "DR-2400")

    def test_events_come_as_they_happen(self):
        self.log_out()
        self.check(self.run_here("login"))
        kept = self.check(self.run_here("events", "--since", "none", "--count", "2"))
        self.assertRegex(kept.out, r"^\d+\tlost\t.*\n\d+\tlog(in|out)\tclient=127.0.0.1\n$")
        told = self.check(self.run_here("--json", "events", "--since", "none", "--count", "1")).json
        self.assertEqual(told["kind"], "lost")
        self.log_out()
        self.check(self.run_here("events", password=None), 3, err="wants a login")

    def test_ctrl_c_ends_the_events(self):
        self.check(self.run_here("login"))
        terminal = OnTerminal(self.host.url, "events", password=PASSWORD)
        # Until the stream stands nothing of it is seen.
        self.assertTrue(wait_for(lambda: (self.run_here("login"), terminal.read(),
                                          "\tlogin\t" in terminal.seen)[-1]))
        terminal.type("\x03")
        self.assertTrue(terminal.see("interrupted"))
        self.assertEqual(terminal.end(), 130)

    def test_several_routers_have_their_turn_each_and_the_first_failure_decides(self):
        nobody = "http://127.0.0.1:9"
        result = self.run_here("--router", nobody, "get", "rss_DeviceModel")
        self.check(result, 4, out=f"^# {self.host.url}\nDR-2400\n# {nobody}\n$",
                   err=f"nothing answers at {nobody}")
        lines = kioctl(None, "--json", "get", "rss_DeviceModel",
                       env={"KIO_ROUTER": f"{nobody} {self.host.url}"})
        self.check(lines, 4)
        first, second = [json.loads(line) for line in lines.out.splitlines()]
        self.assertEqual((first["router"], first["error"]["kind"]), (nobody, "unreachable"))
        self.assertEqual((second["router"], second["value"]), (self.host.url, "DR-2400"))

    def test_the_router_is_named_anywhere_on_the_line(self):
        for words in (("get", "--router", self.host.url, "rss_DeviceModel"),
                      ("get", "rss_DeviceModel", "--router", self.host.url)):
            self.check(kioctl(None, *words), out="^DR-2400\n$")

    def test_usage(self):
        for words in ([], ["frobnicate"], ["send"], ["device", "more"], ["--color", "red", "device"],
                      ["send", "x", "--confirm-within", "4"], ["firmware"]):
            self.check(self.run_here(*words), 2)
        self.check(kioctl(None, "device"), 2, err="no router is named\n  next: give --router")
        self.check(kioctl("ftp://router", "device"), 2, err="this is no address of a router")
        self.check(kioctl("http://no.such.host.invalid", "device"), 4, err="no host of the name")

    def test_what_is_no_router_is_told(self):
        for text in ("hello", "[]", "{}", '{"uptime": "long"}'):
            server = Told(lambda *_, text=text: (200, {}, text))
            self.check(kioctl(server.url, "login"), 4)
            server.close()
        server = Told(lambda *_: (200, {}, json.dumps(device(lastApply={"id": 5}))))
        self.check(kioctl(server.url, "wait", "--early"), 4, err="not as documented")
        server.close()

    def test_a_request_ends_in_time(self):
        held = threading.Event()
        server = Told(lambda *_: (held.wait(PATIENCE), (200, {}, "late"))[1])
        self.check(kioctl(server.url, "--timeout", "1", "device"), 5, err="did not answer in time")
        held.set()
        server.close()

    def test_output_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([KIOCTL, "--router", self.host.url, "device"], stdout=full,
                                  stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual(done.returncode, 7, done.stderr)

    def test_control_characters_of_a_router_do_not_reach_the_terminal(self):
        server = Told(lambda *_: (200, {}, json.dumps(device(name="a\x1b[2Jb"))))
        self.check(kioctl(server.url, "device"), out=r"(?m)^name\ta\?\[2Jb$")
        server.close()


class Words(Case):
    def complete(self, *words):
        lines = kioctl(None, "complete", *words).out.splitlines()
        return [line.split("\t")[0] for line in lines]

    def test_completion_offers_commands_and_options(self):
        self.assertEqual(self.complete("lo"), ["login", "logout"])
        self.assertEqual(self.complete("firmware", "s"), ["status", "search"])
        self.assertEqual(self.complete("send", "--dry"), ["--dry-run"])
        self.assertIn("--router", self.complete("send", "--"))
        self.assertEqual(self.complete("--json", "result", "--j"), ["--json"])
        self.assertEqual(self.complete("device", "x"), [])

    def test_bash_completes(self):
        script = SOURCE / "ctl/completion/kioctl"
        program = f"""PATH={os.path.dirname(KIOCTL)}:$PATH; . {script}
            COMP_WORDS=(kioctl firmware up) COMP_CWORD=2; _kioctl; echo "${{COMPREPLY[@]}}" """
        done = subprocess.run(["bash", "-c", program], capture_output=True, text=True, check=True)
        self.assertEqual(done.stdout, "upgrade\n")

    @unittest.skipUnless(shutil.which("zsh"), "there is no zsh")
    def test_zsh_completes(self):
        script = SOURCE / "ctl/completion/_kioctl"
        program = f"""PATH={os.path.dirname(KIOCTL)}:$PATH
            _describe() {{ print -l -- "${{(@P)2}}"; }}
            words=(kioctl firmware up) CURRENT=3; . {script}"""
        done = subprocess.run(["zsh", "-fc", program], capture_output=True, text=True, check=True)
        self.assertEqual(done.stdout, "upgrade:Have the router write it\n")

    def test_the_manual_page_has_all_commands_options_and_exit_codes(self):
        page = (SOURCE / "docs/man/kioctl.1.scd").read_text()
        told = kioctl(None, "--help-all").out
        commands = {word for word in self.complete("") if word != "firmware"}
        commands |= {"firmware " + word for word in self.complete("firmware", "")}
        described = page[page.index("# COMMANDS"):page.index("# ENVIRONMENT")]
        self.assertEqual(commands, set(re.findall(r"(?m)^\*([a-z ]+)\*", described)))
        options = set(re.findall(r"(?m)^ +(?:-\w,)?(--[a-z-]+)", told)) - {"--help"}
        self.assertGreater(len(options), 20)
        self.assertEqual(options, set(re.findall(r"\*(--[a-z-]+)\*", page)) - {"--help"})
        codes = set(re.findall(r"(\d+) [a-z]", told[told.index("Exit codes"):]))
        self.assertEqual(codes, set(re.findall(r"(?m)^\*(\d+)\*$", page)))


if __name__ == "__main__":
    unittest.main()
