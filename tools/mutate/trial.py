"""Compiles a fault, links the test programs with it and runs the tests that come near it."""

import collections
import concurrent.futures
import dataclasses
import hashlib
import json
import math
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys

from source import Source

LIBRARY = "libkioapp.so"
# Tests that take longer wait until the others have found nothing.
SLOW_MILLISECONDS = 100
MEMORY_LIMIT = 4 << 30
# Some tests make a file of 4 GB with nothing in it.
FILE_LIMIT = 8 << 30


def run(command, **options):
    return subprocess.run(
        command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", **options
    )


def must_run(command, **options):
    done = run(command, **options)
    if done.returncode != 0:
        print(f"{shlex.join(map(str, command))}\n{done.stdout}{done.stderr}", file=sys.stderr)
        raise SystemExit("a command failed that needs no fault to succeed")
    return done.stdout


def limit_room():
    """Called in a child: keeps it from filling the memory and the disk."""
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_LIMIT, FILE_LIMIT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


@dataclasses.dataclass
class Unit:
    """A source file of the library."""

    name: str  # from the top of the tree
    object: str  # as the link commands of the build name it
    flags: list
    includes: set = dataclasses.field(default_factory=set)


@dataclasses.dataclass
class Test:
    program: str
    name: str
    milliseconds: float
    functions: set


@dataclasses.dataclass
class Outcome:
    kind: str  # killed, build, same, survived; missed by the quick tests
    by: str = ""


class Bench:
    """The library and its tests, copied from a build directory so that both may change meanwhile."""

    def __init__(self, top, build, work):
        """`top` is the tree, `build` its debug build, and `work` takes what is made."""
        self.top = top
        self.build = build
        self.work = work
        self.tree = work / "tree"
        self.objects = work / "objects"
        self.rooms, self.abi_programs, self.released_programs = _read_programs(top / "tools" / "mutate" / "programs")
        self.units = {}
        self.released_flags = {}
        self.links = {}
        self.tests = []
        self.fresh = {}
        self.entered_anywhere = set()
        self.sources = {}

    # Preparing.

    def prepare(self, jobs):
        self._copy()
        self._read_build()
        stamp = self.work / "stamp"
        wanted = self._fingerprint()
        if not stamp.exists() or stamp.read_text() != wanted:
            for name in ("plain", "entering", "records", "same"):
                shutil.rmtree(self.work / name, ignore_errors=True)
            self._precompile()
            with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
                list(pool.map(self._compile_plain, self.units.values()))
                list(pool.map(self._compile_entering, self.units.values()))
                (self.work / "records").mkdir()
                flags = ["-std=c++20", "-O1", "-c", pathlib.Path(__file__).parent / "record.cc"]
                must_run(["g++", *flags, "-o", self.work / "records" / "record.o"])
                list(pool.map(self._record, self.rooms))
            stamp.write_text(wanted)
        for unit in self.units.values():
            text = self._plain(unit).with_suffix(".d").read_text().replace("\\\n", " ")
            unit.includes = {
                os.path.relpath(path, self.tree)
                for path in text.split()[1:]
                if path.startswith(str(self.tree))
            }
        self._read_records()
        self._find_groups()

    def _copy(self):
        for folder in ("src", "include"):
            shutil.rmtree(self.tree / folder, ignore_errors=True)
            shutil.copytree(self.top / folder, self.tree / folder)
        for file in sorted((self.tree / "src").rglob("*")):
            if file.suffix in (".cc", ".h"):
                name = str(file.relative_to(self.tree))
                self.sources[name] = Source(name, file.read_text())

    def _read_build(self):
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            words = shlex.split(entry["command"])
            output = words[words.index("-o") + 1] if "-o" in words else ""
            name = os.path.relpath(entry["file"], self.top)
            is_released = "/kioapp_released.dir/" in output
            if not is_released and "/kioapp_objects.dir/" not in output:
                continue
            flags = [
                word.replace(str(self.top), str(self.tree))
                for word in words[1 : words.index("-o")]
                # A fault is no less one for a warning.
                if not re.fullmatch(r"-g\d?|-W.*", word) and (is_released or word[:2] != "-O")
            ]
            while flags and not flags[0].startswith("-"):
                del flags[0]
            if is_released:
                self.released_flags[name] = flags + ["-g0", "-w"]
                continue
            self.units[name] = Unit(name, words[words.index("-o") + 1], flags + ["-O0", "-g0", "-w"])
        ninja = shutil.which("ninja") or "ninja"
        for program in (*self.rooms, *self.abi_programs, *self.released_programs):
            command = must_run([ninja, "-C", self.build, "-t", "commands", program])
            self.links[program] = self._own_link(command.splitlines()[-1])
        library = must_run([ninja, "-C", self.build, "-t", "commands", LIBRARY])
        lines = [line for line in library.splitlines() if "-shared" in line and LIBRARY in line]
        self.links[LIBRARY] = self._own_link(lines[-1])
        # Which tests need a process of their own.
        for folder in {self.build / pathlib.Path(link[1]).parent for link in self.links.values()}:
            for file in folder.glob("CTestTestfile.cmake"):
                for program, fresh in re.findall(
                    r'"[^"]*/(\w+)" "--gtest_brief=1" "--gtest_filter=-([^"]*)"', file.read_text()
                ):
                    self.fresh[program] = [
                        re.compile(re.escape(pattern).replace(r"\*", ".*"))
                        for pattern in fresh.split(":")
                        if pattern
                    ]

    def _own_link(self, command):
        """A link command of the build, over copies of what it links."""
        command = command.split("&&")[1]
        words = shlex.split(command)
        output = words[words.index("-o") + 1]
        kept = []
        library_objects = {unit.object for unit in self.units.values()}
        i = 1
        while i < len(words):
            word = words[i]
            if word == "-o":
                i += 2
                continue
            if re.fullmatch(r"-g\d?", word):
                i += 1
                continue
            path = self.build / word
            if not word.startswith("-") and word not in library_objects and path.is_file():
                if word.endswith((".o", ".a")) and not word.startswith("/"):
                    word = str(self._copied(word))
                else:
                    word = str(path)
            kept.append(word)
            i += 1
        return kept, output

    def _copied(self, word):
        copy = self.objects / word
        original = self.build / word
        if not copy.exists() or copy.stat().st_mtime < original.stat().st_mtime:
            copy.parent.mkdir(parents=True, exist_ok=True)
            must_run(["objcopy", "--strip-debug", original, copy])
        return copy

    def _fingerprint(self):
        sum_ = hashlib.sha256()
        for source in self.sources.values():
            sum_.update(f"{source.name}\0{source.text}\0".encode())
        for file in sorted((self.tree / "include").rglob("*.h")):
            sum_.update(file.read_bytes())
        for file in sorted(self.objects.rglob("*.[oa]")):
            sum_.update(file.read_bytes())
        sum_.update(json.dumps([unit.flags for unit in self.units.values()]).encode())
        for file in ("trial.py", "record.cc"):
            sum_.update((pathlib.Path(__file__).parent / file).read_bytes())
        return sum_.hexdigest()

    def _precompile(self):
        """The headers of the C and C++ libraries, in which most of the compiler's time goes."""
        names = sorted({
            name
            for source in self.sources.values()
            for name in re.findall(r"^#include <([^>]*)>", source.text, re.M)
        })  # fmt: skip
        folder = self.work / "standard"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        header = folder / "standard.h"
        header.write_text("".join(
            f"#if __has_include(<{name}>)\n#include <{name}>\n#endif\n" for name in names
        ))  # fmt: skip
        flags = self._common_flags()
        must_run(["g++", *flags, "-x", "c++-header", header, "-o", folder / "standard.h.gch"])

    def _common_flags(self):
        return collections.Counter(tuple(unit.flags) for unit in self.units.values()).most_common(1)[0][0]

    def _precompiled(self):
        return ["-include", self.work / "standard" / "standard.h"]

    def _plain(self, unit):
        return self.work / "plain" / (unit.name + ".o")

    def _compile_plain(self, unit):
        output = self._plain(unit)
        output.parent.mkdir(parents=True, exist_ok=True)
        command = ["g++", *self._precompiled(), *unit.flags, "-MMD", "-c", self.tree / unit.name, "-o", output]
        must_run(command)

    def _compile_entering(self, unit):
        output = self.work / "entering" / (unit.name + ".o")
        output.parent.mkdir(parents=True, exist_ok=True)
        flags = [flag for flag in unit.flags if flag != "-g0"]
        must_run(["g++", *flags, "-g1", "-finstrument-functions", "-c", self.tree / unit.name,
                  "-o", output])  # fmt: skip

    def link(self, target, output, objects):
        """Links with the given objects, by their names in the build."""
        words = [str(objects.get(word, word)) for word in self.links[target][0]]
        # gold takes a third of the time, and does not know all options of the library.
        linker = [] if target == LIBRARY else ["-fuse-ld=gold"]
        return run(["g++", *linker, *filter(None, words), "-o", output])

    def plain_objects(self):
        return {unit.object: self._plain(unit) for unit in self.units.values()}

    # Recording which test enters which function.

    def _record(self, program):
        folder = self.work / "records"
        objects = {
            unit.object: self.work / "entering" / (unit.name + ".o") for unit in self.units.values()
        }
        binary = folder / program
        words = [str(objects.get(word, word)) for word in self.links[program][0]]
        # Not by gold, which knows no __executable_start.
        must_run(["g++", folder / "record.o", *words, "-o", binary])
        scratch = folder / f"{program}.tmp"
        scratch.mkdir()
        environment = dict(os.environ, KIO_MUTATE_RECORD=str(folder / f"{program}.raw"),
                           TMPDIR=str(scratch))  # fmt: skip
        fresh = self.fresh.get(program, [])
        listed = must_run([binary, "--gtest_list_tests"], cwd=scratch, env=environment)
        alone = [name for name in _listed_tests(listed) if any(p.fullmatch(name) for p in fresh)]
        for names in (f"-{':'.join(alone)}", *alone):
            must_run([binary, "--gtest_brief=1", f"--gtest_filter={names}"], cwd=scratch,
                     env=environment, preexec_fn=limit_room)  # fmt: skip
        self._name_functions(binary, folder / f"{program}.raw", folder / f"{program}.json")
        shutil.rmtree(scratch)
        binary.unlink()
        (folder / f"{program}.raw.map").unlink(missing_ok=True)

    def _name_functions(self, binary, raw, named):
        rows = []
        addresses = set()
        for line in raw.read_text().splitlines():
            name, outcome, time, entered = line.split("\t")
            if outcome == "failed":
                raise SystemExit(f"{binary.name}: {name} fails without a fault")
            rows.append((name, outcome, float(time), entered.split()))
            addresses.update(entered.split())
        addresses = sorted(addresses)
        places = subprocess.run(
            ["addr2line", "-e", binary], input="".join(f"{address}\n" for address in addresses),
            capture_output=True, text=True, check=True)  # fmt: skip
        functions = {}
        for address, place in zip(addresses, places.stdout.splitlines()):
            path, _, line = place.partition(" ")[0].rpartition(":")
            name = os.path.relpath(path, self.tree)
            if name in self.sources and line.isdigit():
                number = self.sources[name].function_at(int(line))
                functions[address] = f"{name}:{number}"
        named.write_text(json.dumps([
            (name, outcome, time, sorted({functions[a] for a in entered if a in functions}))
            for name, outcome, time, entered in rows
        ]))  # fmt: skip

    def _read_records(self):
        for program in self.rooms:
            rows = json.loads((self.work / "records" / f"{program}.json").read_text())
            always = {f for name, _, _, functions in rows if name == "*.*" for f in functions}
            for name, outcome, milliseconds, functions in rows:
                if name != "*.*" and outcome == "passed":
                    test = Test(program, name, milliseconds, set(functions) | always)
                    self.tests.append(test)
                    self.entered_anywhere |= test.functions

        self._thin_slow_tests()

    def _thin_slow_tests(self):
        """Of slow tests that differ by a number alone, the first and the last are run."""
        families = collections.defaultdict(list)
        for test in self.tests:
            family, _, number = test.name.rpartition("/")
            if test.milliseconds > SLOW_MILLISECONDS and number.isdigit():
                families[test.program, family].append(test)
        for family in families.values():
            for test in sorted(family, key=lambda test: int(test.name.rpartition("/")[2]))[1:-1]:
                self.tests.remove(test)

    # Units that are compiled at once when a fault stands in a header.

    def _find_groups(self):
        """The units that can be compiled as one: those whose names do not collide."""
        cache = self.work / "group.json"
        key = self._fingerprint()
        if cache.exists():
            kept = json.loads(cache.read_text())
            if kept["key"] == key:
                self.group = kept["group"]
                return
        # Left out by one program, or compiled in another way.
        flags = self._common_flags()
        group = [
            name
            for name, unit in self.units.items()
            if tuple(unit.flags) == flags and not name.endswith("external_calls.cc")
        ]
        while True:
            done, _ = self._compile_group(
                group, self.work / "group.o", self._precompiled(), flags
            )
            if done.returncode == 0:
                break
            wrong = set(re.findall(r"^(\S+?):\d+:\d+: error", done.stderr, re.M))
            wrong = {os.path.relpath(path, self.tree) for path in wrong} & set(group)
            if not wrong:
                group = []
                break
            group = [name for name in group if name not in wrong]
        self.group = group
        cache.write_text(json.dumps({"key": key, "group": group}))

    def _compile_group(self, names, output, before, flags):
        text = "".join(f'#include "{self.tree / name}"\n' for name in names)
        unit = output.with_suffix(".cc")
        unit.write_text(text)
        return run(["g++", *before, *flags, "-c", unit, "-o", output]), output

    # Trying a fault.

    def try_fault(self, mutant, folder, quick):
        """What becomes of a fault; `folder` takes what is made. `quick` leaves out slow tests."""
        folder.mkdir(parents=True, exist_ok=True)
        source = self.sources[mutant.file]
        overlay = folder / "overlay"
        shutil.rmtree(overlay, ignore_errors=True)
        path = overlay / os.path.relpath(mutant.file, "src")
        path.parent.mkdir(parents=True)
        path.write_text(mutant.apply(source.text))
        objects = self._compile_fault(mutant.file, overlay, path, folder)
        if objects is None:
            return Outcome("build")
        if self._is_same(objects, mutant.file, folder):
            return Outcome("same")
        killer = self._kill(mutant, folder, objects, quick)
        if killer:
            return Outcome("killed", killer)
        # What the optimizer makes the same code of does the same.
        released = self._compile_fault(mutant.file, overlay, path, folder, released=True)
        if released is not None and self._is_same(released, mutant.file, folder, released=True):
            return Outcome("same")
        if quick:
            return Outcome("missed")
        killer = self._run_released(folder, released) if released is not None else ""
        return Outcome("killed", killer) if killer else Outcome("survived")

    def _flags(self, unit, released):
        if not released:
            return [*self._precompiled(), *unit.flags]
        return self.released_flags.get(unit.name, [*unit.flags, "-O2", "-DNDEBUG"])

    def _compile_fault(self, name, overlay, path, folder, released=False):
        """The objects that hold the fault, by the names of the build; none when it does not compile.
        `released` compiles them as a release build does."""
        before = [f"-I{overlay}"]
        if name in self.units:
            unit = self.units[name]
            flags = self._flags(unit, released)
            done = run(["g++", *before, *flags, "-c", path, "-o", folder / "fault.o"])
            return {unit.object: folder / "fault.o"} if done.returncode == 0 else None
        users = [unit for unit in self.units.values() if name in unit.includes]
        together = [unit for unit in users if unit.name in self.group]
        alone = [unit for unit in users if unit.name not in self.group]
        # A release build has not the same options for all.
        if len(together) < 2 or released:
            together, alone = [], users
        objects = {}
        for number, unit in enumerate(alone):
            output = folder / f"fault{number}.o"
            flags = self._flags(unit, released)
            command = ["g++", *before, *flags, "-c", self.tree / unit.name, "-o", output]
            if run(command).returncode != 0:
                return None
            objects[unit.object] = output
        if together:
            flags = self._flags(together[0], released)
            names = [unit.name for unit in together]
            done, output = self._compile_group(names, folder / "fault.o", before, flags)
            if done.returncode != 0:
                return None
            objects.update({unit.object: "" for unit in together[1:]})
            objects[together[0].object] = output
        return objects

    def _is_same(self, objects, name, folder, released=False):
        """Whether the compiler makes the same code of it."""
        cache = self.work / "same" / (name + (".released" if released else ".debug"))
        if not cache.is_dir():
            # Made of the file as it is, in the same way.
            made = folder / "unchanged"
            shutil.rmtree(made, ignore_errors=True)
            overlay = made / "overlay"
            path = overlay / os.path.relpath(name, "src")
            path.parent.mkdir(parents=True)
            path.write_text(self.sources[name].text)
            unchanged = self._compile_fault(name, overlay, path, made, released)
            cache.parent.mkdir(parents=True, exist_ok=True)
            partial = folder / "partial"
            shutil.rmtree(partial, ignore_errors=True)
            partial.mkdir()
            for output in filter(None, unchanged.values()):
                (partial / output.name).write_bytes(output.read_bytes())
            try:
                partial.rename(cache)
            except OSError:
                pass  # another fault's was there first
        return all(
            output.read_bytes() == (cache / output.name).read_bytes()
            for output in filter(None, objects.values())
        )

    def tests_near(self, mutant):
        number = self.sources[mutant.file].function_at(mutant.line)
        place = f"{mutant.file}:{number}"
        # What stands outside of functions, or is entered when the library is compiled, may show in
        # any test.
        if number < 0 or place not in self.entered_anywhere:
            return self.tests
        return [test for test in self.tests if place in test.functions]

    def _kill(self, mutant, folder, objects, quick):
        """The test that fails with the fault; empty when none does."""
        linked = dict(self.plain_objects(), **objects)
        room = mutant.file.split("/")[1]
        near = collections.defaultdict(lambda: ([], []))
        for test in self.tests_near(mutant):
            near[test.program][test.milliseconds > SLOW_MILLISECONDS].append(test)
        built = {}
        try:
            for slow in (False,) if quick else (False, True):
                order = sorted(
                    (program for program in near if near[program][slow]),
                    key=lambda p: (self.rooms[p] != room, sum(t.milliseconds for t in near[p][slow])),
                )
                for program in order:
                    if program not in built:
                        binary = folder / program
                        if self.link(program, binary, linked).returncode != 0:
                            return f"{program}: does not link"
                        built[program] = binary
                    killer = self._run_tests(program, built[program], near[program][slow], folder)
                    if killer:
                        return killer
            return "" if quick else self._run_abi(folder, linked)
        finally:
            for binary in built.values():
                binary.unlink(missing_ok=True)

    def _run_tests(self, program, binary, tests, folder):
        patterns = self.fresh.get(program, [])
        alone = [test for test in tests if any(p.fullmatch(test.name) for p in patterns)]
        others = [test for test in tests if test not in alone]
        for group in ([others] if others else []) + [[test] for test in alone]:
            command = [binary, "--gtest_brief=1", "--gtest_fail_fast",
                       "--gtest_filter=" + ":".join(test.name for test in group)]  # fmt: skip
            estimate = sum(test.milliseconds for test in group) / 1000
            code, said = self._limited(command, estimate, folder)
            passed = re.search(r"^\[  PASSED  \] (\d+) tests?\.$", said, re.M)
            if code != 0 or not passed or int(passed.group(1)) != len(group):
                failed = re.search(r"^\[  FAILED  \] ([\w/.]+)", said, re.M)
                how = failed.group(1) if failed else f"exit {code}"
                return f"{program}: {how}"
        return ""

    def _run_abi(self, folder, objects):
        soname = [word for word in self.links[LIBRARY][0] if word.startswith("-Wl,-soname,")]
        library = folder / soname[0].split(",")[2]
        done = self.link(LIBRARY, library, objects)
        if done.returncode != 0:
            return "libkioapp.so: does not link"
        for program in self.abi_programs:
            binary = self.build / self.links[program][1]
            code, _ = self._limited([binary], 1, folder, {"LD_LIBRARY_PATH": str(folder)})
            if code != 0:
                return f"{program}: exit {code}"
        return ""

    def _run_released(self, folder, objects):
        """Programs over the optimized library, which is another one on the stack."""
        for program in self.released_programs:
            binary = folder / program
            # Their build names the objects by a path that ends in the same way.
            replaced = {
                word: str(output)
                for name, output in objects.items()
                for word in self.links[program][0]
                if word.endswith("/src/" + name.partition(".dir/")[2])
            }
            if not replaced:
                return ""
            if self.link(program, binary, replaced).returncode != 0:
                return f"{program}: does not link"
            code, said = self._limited([binary, "--gtest_brief=1"], 5, folder)
            binary.unlink()
            if code != 0:
                failed = re.search(r"^\[  FAILED  \] ([\w/.]+)", said, re.M)
                return f"{program}: {failed.group(1) if failed else code}"
        return ""

    def _limited(self, command, estimate, folder, environment=None):
        """Runs with five times the usual processor time; returns the exit code and the output."""
        scratch = folder / "tmp"
        shutil.rmtree(scratch, ignore_errors=True)
        scratch.mkdir()
        seconds = max(1, math.ceil(5 * estimate))

        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))
            limit_room()

        with open(folder / "output", "w+b") as output:
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                cwd=scratch, env=dict(os.environ, TMPDIR=str(scratch), **(environment or {})),
                preexec_fn=limit, start_new_session=True)  # fmt: skip
            try:
                code = process.wait(timeout=300 + 20 * estimate)
            except subprocess.TimeoutExpired:
                code = -1
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()
            output.seek(0)
            return code, output.read().decode(errors="replace")


def _read_programs(path):
    """The unit tests' programs by room, those over the shared library, and over the released one."""
    rooms, others, released = {}, [], []
    for line in path.read_text().splitlines():
        if line and not line.startswith("#"):
            program, room = line.split()
            if room == "abi":
                others.append(program)
            elif room == "released":
                released.append(program)
            else:
                rooms[program] = room
    return rooms, others, released


def _listed_tests(listed):
    suite = ""
    for line in listed.splitlines():
        line = line.split("  # ")[0].rstrip()
        if re.fullmatch(r"\S+\.", line):
            suite = line
        elif line.startswith("  "):
            yield suite + line.strip()

