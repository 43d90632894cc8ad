"""What the tests of kioctl share: a kiohost, a router that says what it is told, and kioctl itself."""

import http.server
import json
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest

KIOCTL = os.environ["KIO_CTL_PROGRAM"]
KIOHOST = os.environ["KIO_E2E_HOST"]
SOURCE = pathlib.Path(os.environ["KIO_SOURCE_DIR"])
PASSWORD = "change-me-soon"
PATIENCE = 30

CHANGE = (SOURCE / "host/demo/change.xml").read_text()
BAD_CHANNEL = SOURCE / "host/demo/bad-channel.xml"


def wait_for(condition):
    """Waits until a condition holds; tells whether it came to hold."""
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.02)
    return True


class Host:
    """A kiohost with a store of its own on a free port."""

    def __init__(self, *arguments, password=PASSWORD):
        root = os.environ.get("TMPDIR", "")
        self.dir = tempfile.mkdtemp(prefix="k.", dir=root if 0 < len(root) < 11 else "/tmp")
        self.password = password
        shutil.copytree(SOURCE / "host/scripts", self.dir + "/scripts")
        self.process = None
        self.port = 0
        self.start(*arguments)

    def start(self, *arguments):
        out = self.dir + "/out"
        with open(out, "w") as stream:
            self.process = subprocess.Popen(
                [KIOHOST, "--store", self.dir + "/store.db", "--temp-dir", self.dir,
                 "--script-dir", self.dir + "/scripts", "--port", str(self.port), *arguments],
                stdout=stream, stderr=subprocess.STDOUT)
        listening = r"listening on http://.*:(\d+)/\n"
        if not wait_for(lambda: re.search(listening, pathlib.Path(out).read_text())):
            raise RuntimeError(pathlib.Path(out).read_text())
        self.port = int(re.search(listening, pathlib.Path(out).read_text()).group(1))

    def kill(self):
        self.process.kill()
        self.process.wait()

    def close(self):
        self.kill()
        shutil.rmtree(self.dir, ignore_errors=True)

    @property
    def url(self):
        return f"http://127.0.0.1:{self.port}"

    def file(self, name, content=None):
        path = pathlib.Path(self.dir, name)
        if content is not None:
            path.write_text(content)
        return str(path)


class LocalServer(http.server.ThreadingHTTPServer):
    """A server on this machine that has `serve` answer each request, of which it gets the handler."""

    daemon_threads = True

    def __init__(self, serve):
        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def answer(self):
                serve(self)

            do_GET = do_HEAD = do_POST = do_PUT = do_DELETE = do_OPTIONS = answer

            def log_message(self, *_):
                pass

        super().__init__(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.serve_forever, args=(0.02,), daemon=True).start()

    def handle_error(self, *_):
        """A client that has gone is nothing to report."""

    @property
    def url(self):
        return f"http://127.0.0.1:{self.server_address[1]}"

    def close(self):
        self.shutdown()
        self.server_close()


class Told(LocalServer):
    """A router that answers what a function makes of each request: (status, headers, body)."""

    def __init__(self, answer):
        def serve(request):
            body = request.rfile.read(int(request.headers.get("Content-Length", 0))).decode()
            status, headers, text = answer(request.command, request.path, body)
            data = text if isinstance(text, bytes) else text.encode()
            request.send_response(status)
            for name, value in {"Content-Length": str(len(data)), **headers}.items():
                request.send_header(name, value)
            request.end_headers()
            request.wfile.write(data)

        super().__init__(serve)


def device(outcome="in-force", apply_id="a1", **members):
    """What a router says of itself."""
    last = {"id": apply_id, "outcome": outcome, "uptime": 1} if apply_id else None
    return {"model": "M", "name": "N", "uptime": 100, "bootId": "b1", "state": "ready",
            "lastApply": last, "pendingConfirm": None, "events": [], **members}


def environment(password, more):
    wanted = {key: value for key, value in os.environ.items()
              if not key.startswith("KIO_") and key not in ("NO_COLOR", "http_proxy")}
    if password is not None:
        wanted["KIO_PASSWORD"] = password
    # A proxy that there is not must not be asked for the way to a router.
    return {**wanted, "TERM": "xterm", "http_proxy": "http://127.0.0.1:9", **more}


class Result:
    def __init__(self, code, out, err):
        self.code, self.out, self.err = code, out, err

    @property
    def json(self):
        return json.loads(self.out)


def command(url, arguments):
    return [KIOCTL, *([] if url is None else ["--router", url]), *arguments]


def kioctl(url, *arguments, password=PASSWORD, text=None, env=None):
    """Runs kioctl to its end, without a terminal."""
    done = subprocess.run(command(url, arguments), input=text or "", text=True,
                          capture_output=True, timeout=120, start_new_session=True,
                          env=environment(password, env or {}), check=False)
    return Result(done.returncode, done.stdout, done.stderr)


class OnTerminal:
    """kioctl on a terminal of its own."""

    def __init__(self, url, *arguments, password=None, env=None):
        self.seen = ""
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.execve(KIOCTL, command(url, arguments), environment(password, env or {}))

    def read(self):
        """Takes what has come; False at the end."""
        if not select.select([self.terminal], [], [], 0.02)[0]:
            return True
        try:
            data = os.read(self.terminal, 4096)
        except OSError:
            return False
        self.seen += data.decode(errors="replace")
        return bool(data)

    def see(self, text):
        """Waits until a text has come; tells whether it did."""
        return wait_for(lambda: text in self.seen or (self.read() and False))

    def type(self, text):
        os.write(self.terminal, text.encode())

    def end(self):
        """Waits for the end; gives the exit code."""
        wait_for(lambda: not self.read())
        os.close(self.terminal)
        return os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])


class Case(unittest.TestCase):
    maxDiff = None

    def check(self, result, code=0, out=None, err=None):
        """Compares the exit code, and looks for patterns in the output and the errors."""
        told = f"exit {result.code}\n{result.out}---\n{result.err}"
        self.assertEqual(result.code, code, told)
        for pattern, text in ((out, result.out), (err, result.err)):
            if pattern is not None:
                self.assertRegex(text, pattern, told)
        if code != 0:
            # Every failure says what to do next.
            self.assertRegex(result.err, r"(?m)^kioctl: .+\n  next: .+", told)
        return result


class HostCase(Case):
    """Tests that share a host, with these arguments."""

    ARGUMENTS = ()

    @classmethod
    def setUpClass(cls):
        cls.host = Host(*cls.ARGUMENTS)

    @classmethod
    def tearDownClass(cls):
        cls.host.close()

    def run_here(self, *arguments, **options):
        return kioctl(self.host.url, *arguments, **options)


def change(document=CHANGE, **elements):
    """A document with other contents of the first elements of these names."""
    for name, content in elements.items():
        document = re.sub(f"<{name}>[^<]*</{name}>", f"<{name}>{content}</{name}>", document, count=1)
    return document
