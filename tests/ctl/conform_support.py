"""What the tests of kioctl conform share: a host as a test bench, and routers with a fault."""

import hashlib
import http.client

from support import *


def ask(url, method, path, body=None, headers=None):
    """Sends a request; gives status, headers and body."""
    connection = http.client.HTTPConnection(url.removeprefix("http://"), timeout=PATIENCE)
    try:
        connection.request(method, path, body, headers or {})
        answer = connection.getresponse()
        return answer.status, {name.lower(): value for name, value in answer.getheaders()}, answer.read()
    finally:
        connection.close()


class Bench(Host):
    """A host whose clock stands still, with a control port."""

    def __init__(self):
        super().__init__("--control", "0", "--clock=manual")
        for script in pathlib.Path(self.dir, "scripts").glob("*.sh"):
            script.write_text("#!/bin/sh\n")
        self.control = re.search(r"control port on (\S+)", pathlib.Path(self.dir, "out").read_text()).group(1)

    def reset(self, profile="dual-band-router"):
        # A fault may have left a commit that is due.
        ask(self.control, "POST", "/clock", '{"advance": 100}')
        status, _, body = ask(self.control, "POST", "/reset", json.dumps({"profile": profile}))
        assert status == 200, body
        self.password = self.node("/sys/user:1/password")

    def node(self, path):
        return json.loads(ask(self.control, "GET", "/store" + path)[2])["text"]

    def set_node(self, path, text):
        assert ask(self.control, "PUT", "/store" + path, json.dumps({"text": text}))[0] == 200

    def nodes(self):
        """What an app can set, as it stands in the store."""
        every = json.loads(ask(self.control, "GET", "/store")[2])["nodes"]
        return {node["path"]: node["text"] for node in every if node["path"] != "/sys/factorydefault"}

    def log_in(self, url):
        """Logs this machine in, as an app does."""
        uptime = json.loads(ask(url, "GET", "/device")[2])["uptime"]
        key = hashlib.md5(f"{uptime // 20}127.0.0.1admin{self.password[:63]}".encode()[:127]).hexdigest()
        return ask(url, "POST", "/login", "kioAppKey=:" + key)


class Planted(LocalServer):
    """A router with a fault: it passes requests on to another, and the fault changes one thing.

    A fault is a function of the request (method, path, headers, body) and of `pass_on`, which takes
    such a request and gives the answer (status, headers, body)."""

    def __init__(self, bench, fault):
        port = bench.port

        def pass_on(method, path, headers, body):
            connection = http.client.HTTPConnection("127.0.0.1", port, timeout=PATIENCE)
            try:
                connection.request(method, path, body, headers)
                answer = connection.getresponse()
                return answer.status, dict(answer.getheaders()), answer.read()
            finally:
                connection.close()

        def serve(request):
            body = request.rfile.read(int(request.headers.get("Content-Length", 0)))
            headers = {name: value for name, value in request.headers.items()
                       if name not in ("Content-Length", "Host")}
            status, said, data = fault(request.command, request.path, headers, body, pass_on)
            request.send_response_only(status)
            length = said.get("Content-Length") if request.command == "HEAD" or "X-Cut" in said else None
            for name, value in said.items():
                if name not in ("Content-Length", "Transfer-Encoding", "Connection", "X-Cut"):
                    request.send_header(name, value)
            if status not in (204, 304):
                request.send_header("Content-Length", length or str(len(data)))
            request.end_headers()
            if request.command != "HEAD":
                request.wfile.write(data)
            request.close_connection = "X-Cut" in said

        super().__init__(serve)


def none(method, path, headers, body, pass_on):
    return pass_on(method, path, headers, body)


def on_answer(change):
    """A fault of the answers: `change` gets (method, path, status, headers, body)."""

    def fault(method, path, headers, body, pass_on):
        return change(method, path, *pass_on(method, path, headers, body))

    return fault


def text_of(where, pattern, replacement, method=None):
    """A fault in the body of the answers of a resource."""

    def change(asked, path, status, headers, body):
        if re.fullmatch(where, path) and method in (None, asked):
            body = re.sub(pattern.encode(), replacement.encode(), body)
        return status, headers, body

    return on_answer(change)


def header_of(where, name, value=None):
    """A fault in a header of the answers of a resource."""

    def change(_, path, status, headers, body):
        if re.fullmatch(where, path):
            headers = {key: text for key, text in headers.items() if key.lower() != name.lower()}
            if value is not None:
                headers[name] = value
        return status, headers, body

    return on_answer(change)


def status_of(where, before, after):
    """Another status for answers of a resource."""

    def change(_, path, status, headers, body):
        return (after if re.fullmatch(where, path) and status == before else status), headers, body

    return on_answer(change)


def without_header(name):
    """A router that does not look at a header of the request."""

    def fault(method, path, headers, body, pass_on):
        return pass_on(method, path, {key: text for key, text in headers.items() if key != name}, body)

    return fault


def for_path(where, replacement):
    """A router that takes one path for another."""

    def fault(method, path, headers, body, pass_on):
        return pass_on(method, re.sub(where, replacement, path), headers, body)

    return fault


class Conform(Case):
    @classmethod
    def setUpClass(cls):
        cls.bench = Bench()
        # What could not be restored is written where conform runs.
        cls.before = os.getcwd()
        os.chdir(cls.bench.dir)

    @classmethod
    def tearDownClass(cls):
        os.chdir(cls.before)
        cls.bench.close()

    def conform(self, *arguments, url=None, agreed=True, **options):
        options.setdefault("password", self.bench.password)
        return kioctl(url or self.bench.url, "conform", "--control", self.bench.control,
                      *(["--yes"] if agreed else []), *arguments, **options)

    def planted(self, fault, *cases, arguments=()):
        """Runs cases against a fresh router with a fault; gives the result."""
        self.bench.reset()
        server = Planted(self.bench, fault)
        try:
            return self.conform(*cases, *arguments, url=server.url)
        finally:
            server.close()


def failed(result):
    """The names of the cases that failed, in TAP."""
    return re.findall(r"(?m)^not ok \d+ - (\S+)$", result.out)
