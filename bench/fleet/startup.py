#!/usr/bin/env python3
"""Measures how soon kiohost answers after its start, and how much memory it has then written.

usage: bench/fleet/startup.py [KIOHOST] [RUNS]
"""
import pathlib
import socket
import statistics
import subprocess
import sys
import tempfile
import time


def answered_after(program, directory):
    """Starts the host; seconds until the answer to GET /device, KiB of memory that it has written."""
    begin = time.monotonic()
    host = subprocess.Popen(
        [program, "--store", directory + "/store.db", "--temp-dir", directory, "--port", "0"],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        for line in host.stdout:
            if line.startswith("listening on"):
                break
        else:
            sys.exit("kiohost did not start")
        port = int(line.strip().rstrip("/").rsplit(":", 1)[1])
        with socket.create_connection(("127.0.0.1", port)) as connection:
            connection.sendall(b"GET /device HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n")
            answer = b""
            while piece := connection.recv(65536):
                answer += piece
        seconds = time.monotonic() - begin
        if not answer.startswith(b"HTTP/1.1 200 "):
            sys.exit(f"kiohost answered {answer[:80]!r}")
        rollup = pathlib.Path(f"/proc/{host.pid}/smaps_rollup").read_text()
        # Pages of programs and libraries that no other process has mapped are private as well, but
        # clean: a second router shares them.
        private = sum(int(line.split()[1]) for line in rollup.splitlines()
                      if line.startswith("Private_Dirty:"))
    finally:
        host.terminate()
        host.wait()
    return seconds, private


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else "build/release/host/kiohost"
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 20
    figures = {"with a new store": [], "with a store that exists": []}
    for _ in range(runs):
        with tempfile.TemporaryDirectory(prefix="k.", dir="/tmp") as directory:
            for measured in figures.values():
                measured.append(answered_after(program, directory))
    for name, measured in figures.items():
        seconds = [1000 * time_taken for time_taken, _ in measured]
        memory = [private for _, private in measured]
        print(f"{name}: answers after {statistics.median(seconds):.0f} ms (median; "
              f"{min(seconds):.0f} to {max(seconds):.0f}), {max(memory)} KiB written at most")


if __name__ == "__main__":
    main()
