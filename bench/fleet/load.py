#!/usr/bin/env python3
"""Lets a scripted app loose on each router of a fleet, all at once.

usage: bench/fleet/load.py [ROUTERS] [ROUNDS] [PROGRAMS]

Builds nothing: PROGRAMS (build/release/host) holds kiofleet, kiohost and firmware_server. In each
round an app logs in, reads all variables, sends a settings document with another name of the router,
looks for newer firmware and logs out. Prints the throughput, how long each step took, the errors and
the memory of the routers. Ends with 1 when there was an error.
"""
import collections
import hashlib
import http.client
import json
import os
import pathlib
import re
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
PASSWORD = "change-me-soon"
FIRMWARE_LIST = (ROOT / "host/demo/firmware-list.xml").read_text()
DOCUMENT = (ROOT / "tests/e2e/data/factory.xml").read_text()


class App:
    """The app of one router."""

    def __init__(self, router):
        self.router = router
        self.errors = []
        self.seconds = collections.defaultdict(list)
        # A round is over long before a router that has stopped would be noticed.
        self.connection = http.client.HTTPConnection(router["url"].split("/")[2], timeout=120)

    def call(self, step, method, path, body=None, wanted=""):
        begin = time.monotonic()
        try:
            self.connection.request(method, path, body)
            answer = self.connection.getresponse()
            text = answer.read().decode()
        except (OSError, http.client.HTTPException) as error:
            self.errors.append(f"{self.router['name']}: {step}: {error!r}")
            self.connection.close()
            return ""
        self.seconds[step].append(time.monotonic() - begin)
        if answer.status != 200 or wanted not in text:
            self.errors.append(f"{self.router['name']}: {step}: {answer.status} {text[:200]!r}")
        return text

    def log_in(self):
        device = json.loads(self.call("device", "GET", "/device") or '{"uptime": 0}')
        source = f"{device['uptime'] // 20}127.0.0.1admin{PASSWORD}"
        key = hashlib.md5(source.encode()).hexdigest()
        self.call("login", "POST", "/login", "kioAppKey=:" + key)

    def run(self, rounds, name):
        for number in range(rounds):
            self.log_in()
            self.call("read", "GET", "/vars?values=1", wanted="rss_DeviceName")
            document = re.sub("<DeviceName>.*?<", f"<DeviceName>{name} {number}<", DOCUMENT)
            self.call("exchange", "POST", "/settings", document, "<RssSetResult>0<")
            self.call("firmware", "POST", "/firmware/0", wanted="<result>0<")
            self.call("firmware", "POST", "/firmware/1", wanted="<result>2<")
            self.call("logout", "POST", "/logout")


def memory_of(pid):
    """KiB that belong to this process alone."""
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return sum(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Private_"))


def start_firmware_server(programs, directory):
    www = pathlib.Path(directory)
    for folder in ("DR2400", "fw"):
        (www / folder).mkdir()
    everybody = re.sub("<MACs>.*?</MACs>", "<MAC>*</MAC>", FIRMWARE_LIST)
    (www / "DR2400/DR2400.xml").write_text(everybody)
    (www / "fw/release-notes.xml").write_text("<root></root>")
    server = subprocess.Popen([programs / "firmware_server", directory], stdout=subprocess.PIPE,
                              text=True)
    return server, server.stdout.readline().split()[-1]


def start_fleet(programs, count, proxy):
    environment = dict(os.environ, http_proxy=proxy, no_proxy="127.0.0.1")
    fleet = subprocess.Popen([programs / "kiofleet", str(count)], stdout=subprocess.PIPE, text=True,
                             env=environment)
    table = ""
    for line in fleet.stdout:
        table += line
        if line == "]\n":
            return fleet, json.loads(table)
    sys.exit("the fleet did not start")


def drive(routers, rounds):
    apps = [App(router) for router in routers]
    threads = [threading.Thread(target=app.run, args=(rounds, app.router["name"])) for app in apps]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return apps


def report(apps, seconds, memory):
    steps = collections.defaultdict(list)
    for app in apps:
        for step, taken in app.seconds.items():
            steps[step] += taken
    calls = sum(len(taken) for taken in steps.values())
    print(f"{calls} requests in {seconds:.1f} s: {calls / seconds:.0f} a second")
    for step, taken in steps.items():
        print(f"  {step}: {len(taken)}, median {1000 * statistics.median(taken):.0f} ms, "
              f"longest {1000 * max(taken):.0f} ms")
    print(f"private memory of a router: {min(memory)} to {max(memory)} KiB, "
          f"{sum(memory) / 1024:.0f} MiB in all")
    errors = [error for app in apps for error in app.errors]
    print(f"errors: {len(errors)}")
    for error in errors[:10]:
        print("  " + error)
    return errors


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    programs = pathlib.Path(sys.argv[3] if len(sys.argv) > 3 else ROOT / "build/release/host")
    with tempfile.TemporaryDirectory() as directory:
        server, proxy = start_firmware_server(programs, directory)
        begin = time.monotonic()
        fleet, routers = start_fleet(programs, count, proxy)
        try:
            print(f"{count} routers serve after {time.monotonic() - begin:.1f} s")
            begin = time.monotonic()
            apps = drive(routers, rounds)
            seconds = time.monotonic() - begin
            errors = report(apps, seconds, [memory_of(router["pid"]) for router in routers])
        finally:
            fleet.send_signal(signal.SIGTERM)
            code = fleet.wait()
            server.terminate()
            server.wait()
    print(f"the fleet ended with {code}")
    return 1 if errors or code != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
