#!/usr/bin/env python3
"""control.py KIOHOST [EARLIER_KIOHOST]: what the control port costs, and what it does in how long.

Prints, for each program and for the first one also with --control, the instructions of an exchange and of a read
(counted by callgrind, as the difference between a long and a short session, so that the start is not in them) and the
private memory at rest; and of KIOHOST the time of restoring a snapshot: the median on the clock, and the processor's.
"""

import http.client
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parents[2]
CHANGE = (SOURCE / "host/demo/change.xml").read_bytes()
OTHER = CHANGE.replace(b">Living room<", b">Attic<")
TICKS = os.sysconf("SC_CLK_TCK")


class Host:
    """A kiohost with a store of its own; under callgrind, when a file for its counts is named."""

    def __init__(self, program, options, counts=None):
        self.folder = tempfile.TemporaryDirectory(prefix="k.", dir="/tmp")
        output = pathlib.Path(self.folder.name, "out")
        valgrind = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={counts}", "-q"] if counts else []
        with output.open("w") as stream:
            self.process = subprocess.Popen(
                [*valgrind, program, "--store", self.folder.name + "/s.db", "--temp-dir", self.folder.name,
                 "--script-dir", str(SOURCE / "host/scripts"), "--port", "0", "--open", *options],
                stdout=stream, stderr=subprocess.STDOUT)
        while not (found := re.search(r"listening on http://127.0.0.1:(\d+)/", output.read_text())):
            if self.process.poll() is not None:
                sys.exit(output.read_text())
            time.sleep(0.05)
        self.router = http.client.HTTPConnection("127.0.0.1", int(found[1]))
        found = re.search(r"control port on http://127.0.0.1:(\d+)", output.read_text())
        self.control = http.client.HTTPConnection("127.0.0.1", int(found[1])) if found else None

    def ask(self, connection, method, target, body=None):
        connection.request(method, target, body)
        answer = connection.getresponse()
        answer.read()
        assert answer.status == 200, (method, target, answer.status)

    def exchanges(self, count):
        for i in range(count):
            self.ask(self.router, "POST", "/settings", OTHER if i % 2 else CHANGE)

    def reads(self, count):
        for _ in range(count):
            self.ask(self.router, "GET", "/vars?values=1")

    def memory(self):
        """KiB that no other process shares."""
        rollup = pathlib.Path(f"/proc/{self.process.pid}/smaps_rollup").read_text()
        return sum(int(size) for size in re.findall(r"Private_\w+: +(\d+)", rollup))

    def processor_ms(self):
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) * 1000 / TICKS

    def stop(self):
        self.process.terminate()
        self.process.wait()
        self.folder.cleanup()


def instructions(program, options, work):
    """Of one of what `work` does, in the host itself: its scripts are processes of their own."""
    few, many = 4, 24
    counted = []
    for count in (few, many):
        with tempfile.NamedTemporaryFile(prefix="k.", dir="/tmp") as file:
            host = Host(program, options, file.name)
            work(host, count)
            host.stop()
            counted.append(int(re.search(r"^(?:summary|totals): (\d+)", pathlib.Path(file.name).read_text(), re.M)[1]))
    return (counted[1] - counted[0]) // (many - few)


def at_rest(program, options):
    """KiB after some work: the median of five hosts, as their threads come to use memory in another order each time."""
    return statistics.median(one_at_rest(program, options) for _ in range(5))


def one_at_rest(program, options):
    host = Host(program, options)
    host.exchanges(4)
    host.reads(20)
    time.sleep(3)
    memory = host.memory()
    host.stop()
    return memory


def restores(program, count=200):
    host = Host(program, ["--control", "0", "--clock=manual"])
    host.exchanges(2)
    host.ask(host.control, "PUT", "/snapshots/s")
    times = []
    processor = 0
    for i in range(count):
        # What is restored differs from what is there.
        host.ask(host.control, "PUT", "/store/sys/friendlyname", json.dumps({"text": f"Name {i}"}))
        begin, spent = time.monotonic(), host.processor_ms()
        host.ask(host.control, "POST", "/snapshots/s/restore")
        times.append((time.monotonic() - begin) * 1000)
        processor += (host.processor_ms() - spent) / count
    host.stop()
    return statistics.median(times), max(times), processor


def main():
    rows = [("with --control", sys.argv[1], ["--control", "0"]), ("without", sys.argv[1], [])]
    rows += [("earlier", program, []) for program in sys.argv[2:]]
    for name, program, options in rows:
        exchange = instructions(program, options, Host.exchanges)
        read = instructions(program, options, Host.reads)
        print(f"{name}: {exchange} instructions for an exchange, {read} for a read of all values, "
              f"{at_rest(program, options)} KiB at rest", flush=True)
    median, longest, processor = restores(sys.argv[1])
    print(f"a restore: {median:.1f} ms in the median, {longest:.1f} at most, {processor:.1f} ms of the processor")


if __name__ == "__main__":
    main()
