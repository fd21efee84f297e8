"""Lets calls into the system fail, one after another, in runs of the command against the simulated gateway, and looks
after each whether the run has ended as it should have. scripts/faults builds what this needs.

    sweep.py KARTIX LIBRARY [--seconds N]             every sweep, as many places of each as there is time for
    sweep.py KARTIX LIBRARY --sweep NAME [--place N]  one sweep, or one place of it with all that was said there
"""
import argparse
import concurrent.futures
import errno
import json
import math
import os
import queue
import random
import re
import shutil
import signal
import socket
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

SEED = 4711  # says at which place a sweep begins
PATIENCE = 60
KINDS = ["allocation", "write", "flush", "rename", "read", "connect", "send", "receive"]
# Kind, what the call says, how many fail in a row.
FAULTS = {"write:ENOSPC": 1, "write:EIO": 1, "write:ENOSPC:on": 1 << 40, "flush:EIO": 1, "rename:EACCES": 1,
          "rename:EIO": 1, "read:EIO": 1, "connect:ECONNREFUSED": 1, "send:ECONNRESET": 1, "send:EPIPE": 1,
          "receive:ECONNRESET": 1, "allocation:ENOMEM": 1}
ROADS = {"own": "2014-11-14T09:30:00", "objects": "2026-11-25T09:30:00"}
# As the gateway lists that it has changed something: an order, a cancellation, a notification, a password.
CHANGE = re.compile("->  (information 0|zkr-mhinweis 0|ZEVIS-HINWEIS 300)")


def click(window, button="Button[0]"):
    return {"window": window, "click": button}


TELLS = click("MessageBox", "Button[1]")


@dataclass
class Operation:
    """What the clerk does, what the clerk reads when it was done, and how the gateway lists that it has done it."""
    call: str
    person: str
    lfdnr: str
    script: list
    told: str = ""
    change: str = ""


OPERATIONS = {
    "order": Operation(
        "FahrerKartenBestellung", "4713", "1",
        [{"window": "Bestellung", "select": {"Combo[0]": "norm. Bestellung"}}, click("Bestellung"), click("MessageBox"),
         TELLS], "Bestellung erfolgreich", "->  information 0"),
    "cancellation": Operation("KartenStorno", "4711", "3", [click("fStorno"), TELLS], "Stornierung erfolgreich",
                              "->  information 0"),
    "notification": Operation("KartenMitteilung", "4715", "1", [click("Mitteilung"), TELLS], "erfolgreich übertragen",
                              "->  zkr-mhinweis 0"),
    "inquiry": Operation(
        "ZKRAnfrage", "4716", "1",
        [{"window": "StartForm", "choose": "XPOption[1]"},
         {"window": "StartForm", "type": {"Text[8]": "n0a9sk11842"}}, click("StartForm"), click("ZKR")]),
    "password": Operation(
        "ZKRAnfrage", "4716", "1",
        [click("StartForm", "ZEVISPass"),
         {"window": "ZEVISPassChange", "type": {"Text[1]": "geheim02", "Text[2]": "geheim02"}},
         click("ZEVISPassChange"), TELLS, click("StartForm", "Button[2]")], "Passwort wurde geändert"),
}
SETTINGS = {"set": ["set", "ZKR.KENZA", "K12345"], "unset": ["unset", "ZKR.ZPPER"],
            "import": ["import", "other.reg"], "export": ["export", "made.reg"]}

RUNS = [f"{name}-{road}" for name in OPERATIONS for road in ROADS if f"{name}-{road}" != "password-objects"]
SWEEPS = [f"{run}:{fault}" for run in RUNS for fault in FAULTS]
SWEEPS += [f"settings-{name}:{fault}" for name in SETTINGS for fault in FAULTS
           if not fault.startswith(("connect", "send", "receive"))]


@dataclass
class Ended:
    """A run that is over, and everything that was left."""
    status: int  # None when it hung
    out: str
    err: str
    counts: dict
    fired: int
    passed: int  # calls that were to fail and were let be
    transcript: str = ""
    trace: str = ""
    exchanges: str = ""
    book: list = field(default_factory=list)
    files: dict = field(default_factory=dict)

    def result(self):
        try:
            return json.loads(self.out)["result"]
        except (ValueError, KeyError):
            return None

    def messages(self):
        """That the clerk was shown."""
        events = [json.loads(line) for line in self.transcript.splitlines()]
        return [event["controls"]["Label1"]["text"] for event in events
                if event["event"] == "ready" and "Label1" in event["controls"]]


def free_port():
    """One that the system does not give to a connection while the gateway starts anew."""
    while True:
        port = random.randrange(20000, 30000)
        with socket.socket() as tried:
            if tried.connect_ex(("127.0.0.1", port)) != 0:
                return port


class Place:
    """A sample installation and a gateway of its own, put back before each run."""

    def __init__(self, kartix, library, directory):
        self.kartix, self.library, self.directory = kartix, library, directory
        self.d, self.template, self.aside = directory / "d", directory / "template", directory / "aside"
        self.aside.mkdir(parents=True)
        self.gateway = None
        self.known = {}
        self.environment = {name: value for name, value in os.environ.items() if "DISPLAY" not in name}
        self.environment |= {"HOME": str(directory), "XDG_CONFIG_HOME": str(directory), "QT_HASH_SEED": "0",
                             "KARTIX_REGISTRY": str(self.d / "registry.reg")}
        self.port = free_port()
        self.prepare()

    def prepare(self):
        self.must("demo", "--dir", self.d)
        shutil.rmtree(self.d / "transcripts")
        for name, value in {"ZEVIS.ZEVISPort": self.port, "FS.DBName": self.d / "host.db", "ZFER.DebugLevel": 1,
                            "ZFER.DebugFile": self.d / "trace.txt", "ZKR.Bestellbuch": self.d / "book.txt"}.items():
            self.must("settings", "set", name, value)
        self.must("settings", "set", "ZKR.ZEVISPass", input="geheim01\n")
        self.must("settings", "export", self.d / "other.reg")
        other = (self.d / "other.reg").read_bytes()
        for encoding in ("utf-8", "utf-16-le"):
            other = other.replace("/bestellung".encode(encoding), "/anders".encode(encoding))
        (self.d / "other.reg").write_bytes(other)
        for name, operation in OPERATIONS.items():
            (self.aside / f"{name}.json").write_text(json.dumps([TELLS, *operation.script]))
        shutil.move(self.d, self.template)

    def must(self, *arguments, input=""):
        done = subprocess.run([self.kartix, *map(str, arguments)], env=self.environment, input=input, text=True,
                              capture_output=True)
        if done.returncode:
            sys.exit(f"kartix {arguments}: {done.stderr}")

    def restart_gateway(self):
        self.stop_gateway()
        (self.aside / "state.json").unlink(missing_ok=True)
        self.gateway = subprocess.Popen(
            [self.kartix, "gateway", "--listen", f"127.0.0.1:{self.port}", "--verbose", "--state",
             self.aside / "state.json"],
            env=self.environment, stdout=subprocess.PIPE, stderr=open(self.aside / "exchanges", "w"))
        if not self.gateway.stdout.readline():
            sys.exit("the gateway does not start: " + (self.aside / "exchanges").read_text())

    def stop_gateway(self):
        if not self.gateway:
            return
        self.gateway.terminate()
        self.gateway.wait()
        self.gateway = None

    def put_back(self):
        shutil.rmtree(self.d, ignore_errors=True)
        shutil.copytree(self.template, self.d)
        exchanges = (self.aside / "exchanges").read_text() if self.gateway else ""
        if not self.gateway or CHANGE.search(exchanges):
            self.restart_gateway()

    def unharmed(self, run):
        """What files there are before a run, and the run without a fault."""
        if run not in self.known:
            self.put_back()
            old, ended = self.files(), self.run(run)
            done = ended.result() == (-1 if run.startswith("password") else 1) or run.startswith("settings")
            if ended.status != 0 or not done:
                sys.exit(f"{run} fails without a fault: {ended.out}{ended.err}{ended.trace[-2000:]}")
            self.known[run] = old, ended
        return self.known[run]

    def command(self, run):
        name, variant = run.split("-")
        if name == "settings":
            return ["settings", *SETTINGS[variant]]
        operation = OPERATIONS[name]
        return ["run", operation.call, "--person", operation.person, "--lfdnr", operation.lfdnr, "--clerk", "Meier",
                "--now", ROADS[variant], "--script", self.aside / f"{name}.json", "--transcript", self.aside / "seen"]

    def run(self, run, fault="allocation:ENOMEM", place=0):
        """Place 0: nothing fails, everything is counted."""
        kind, error, *_ = fault.split(":")
        state = self.aside / "state"
        (self.aside / "seen").write_text("")
        (self.d / "trace.txt").write_text("")
        environment = self.environment | {
            "LD_PRELOAD": self.library, "KARTIX_FAULT_STATE": str(state), "KARTIX_FAULT_SPARE": str(self.aside / "seen"),
            "KARTIX_FAULT": f"{kind}:{place}:{FAULTS[fault]}:{getattr(errno, error)}"}
        seen = (self.aside / "exchanges").stat().st_size
        process = subprocess.Popen([self.kartix, *self.command(run)], cwd=self.d, env=environment, text=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   errors="backslashreplace")
        try:
            out, err = process.communicate(timeout=PATIENCE)
            status = process.returncode
        except subprocess.TimeoutExpired:
            process.kill()
            (out, err), status = process.communicate(), None
        *counts, fired, passed = struct.unpack("15q", state.read_bytes())[5:]
        return Ended(status, out, err, dict(zip(KINDS, counts)), fired, passed, (self.aside / "seen").read_text(),
                     (self.d / "trace.txt").read_text("cp1252", "replace"),
                     (self.aside / "exchanges").read_text()[seen:], self.book(), self.files())

    def book(self):
        file = self.d / "book.txt"
        return [line.split("\t") for line in file.read_text().splitlines()] if file.exists() else []

    def files(self):
        """What must be whole: content by name, of the database its rows."""
        found = {}
        for path in sorted(self.d.rglob("*")):
            name = str(path.relative_to(self.d))
            if path.is_file() and name not in ("trace.txt", "book.txt", "host.db", "host.db-journal"):
                found[name] = re.sub(rb"COOKIE-(\d-\d)=[^\r\n]+\r\n", rb"COOKIE-\1\r\n", path.read_bytes())
        database = sqlite3.connect(self.d / "host.db")
        try:
            sound = database.execute("pragma integrity_check").fetchall() == [("ok",)]
            found["host.db"] = "\n".join(database.iterdump()) if sound else "damaged"
        except sqlite3.Error as failure:
            found["host.db"] = str(failure)
        database.close()
        return found


def problems(place, run, fault, ended, clean, old):
    """What is wrong after a run in which a call has failed."""
    if ended.status is None:
        return ["hangs"]
    if ended.status < 0:
        return ["ended by " + signal.Signals(-ended.status).name]
    if any(len(fields) != {"begin": 9, "end": 5}.get(fields[0]) for fields in ended.book):
        return ["a broken line in the order book"]
    name, variant = run.split("-")
    found = [f"status {ended.status}"] if ended.status > 3 else []
    if re.search(r"\\x[89a-f]", ended.out + ended.err):
        found.append("words that are no UTF-8")
    if ended.status and not ended.err and not fault.endswith(":on"):
        found.append("failed without a word on standard error")
    if name == "settings" and ended.status == 0 and ended.files != clean.files:
        found.append("said to be done, but was not")
    if name != "settings":
        found += problems_of_operation(OPERATIONS[name], ended, clean)
    if name == "password":
        found += problems_of_password(ended, clean, (place.aside / "state.json").read_text())
    for file in sorted({*ended.files, *old, *clean.files}):
        # What was left beside a file is taken away by whoever writes that file next.
        if not file.endswith(".new") and ended.files.get(file) not in (old.get(file), clean.files.get(file)):
            found.append(f"{file} is neither the old nor the new one")

    if name == "settings":
        after = place.run(run)
        there = variant == "export" and ended.files == clean.files and "gibt es schon" in after.err
        good = there or after.status == 0 and after.files == clean.files
    elif name == "password" and ended.files["registry.reg"] == old["registry.reg"]:
        good = True  # another password than the stored one may count by now
    else:
        after = place.run("inquiry-" + variant)
        good = after.status == 0 and after.result() == 1
    return found if good else found + ["the next run fails: " + after.err]


def problems_of_operation(operation, ended, clean):
    """What the gateway has carried out against what clerk, host, trace and order book say."""
    messages, result = ended.messages(), ended.result()
    outcomes = {fields[1]: "open" if fields[0] == "begin" else fields[3] for fields in ended.book}.values()
    taken = ended.exchanges.count(operation.change) if operation.change else 0
    told = bool(operation.told) and any(operation.told in message for message in messages)
    unclear = "Ausgang unklar" in ended.trace or {"open", "unclear"} & {*outcomes}
    traced = re.search("Abbruch|abgebrochen|nicht|unklar|abgewiesen", ended.trace)
    # Where not even the message of the trace was answered, all that failed is the script, which waited for it.
    begun = '"event":"step"' in ended.transcript
    said = ({*messages} - {*clean.messages()} or "fehlgeschlagen" in ended.transcript or "incomplete" in ended.err or
            ended.status == 1 and ended.err and "Call: " not in ended.trace)
    if ended.status in (0, 3) and result is None:
        yield "no result"
    if taken > 1:
        yield f"carried out {taken} times"
    if operation.change and not taken and (told or result == 1 or "accepted" in outcomes):
        yield "said to be carried out, but was not"
    if taken and not told and result != 1 and not unclear and "Meldung nicht angezeigt" not in ended.trace + ended.err:
        yield "carried out in silence"
    if taken and {"refused", "notSent"} & {*outcomes}:
        yield "carried out, and the order book says it was not"
    if operation.change and told and result not in (1, None):
        yield "told to the clerk, but not to the host"
    if result != clean.result() and begun and not traced and not said:
        yield "failed without a word"


def problems_of_password(ended, clean, gateway):
    """The password that counts at the gateway against the stored one."""
    changed = "geheim02" in gateway
    stored = ended.files["registry.reg"] == clean.files["registry.reg"]
    messages = str(ended.messages())
    if not changed and (stored or OPERATIONS["password"].told in messages):
        yield "said to be changed, but was not"
    if changed and not stored and not re.search("nicht ge(speichert|schrieben)|unklar|Abbruch", ended.trace + messages):
        yield "changed at the gateway, and lost here without a word"


def spread(count):
    """Numbers 1 to `count` in an order of which every beginning lies evenly."""
    stride = max(1, round(count * 0.6180339887))
    while math.gcd(stride, count) > 1:
        stride += 1
    return [(SEED + i * stride) % count + 1 for i in range(count)]


class Sweeps:
    def __init__(self, kartix, library, directory):
        self.workers = os.cpu_count() or 1
        self.pool = concurrent.futures.ThreadPoolExecutor(self.workers)
        self.places = queue.Queue()
        for place in self.pool.map(lambda i: Place(kartix, library, directory / str(i)), range(self.workers)):
            self.places.put(place)
        self.tried = self.wrong = 0

    def at(self, sweep, number, until):
        """What is wrong at a place; None when it was not come to."""
        if time.monotonic() > until:
            return None
        place = self.places.get()
        try:
            run, fault = sweep.split(":", 1)
            old, clean = place.unharmed(run)
            place.put_back()
            ended = place.run(run, fault, number)
            if not ended.fired:
                return "passed over" if ended.passed else None
            return number, problems(place, run, fault, ended, clean, old), ended
        finally:
            self.places.put(place)

    def count(self, sweep):
        place = self.places.get()
        try:
            return place.unharmed(sweep.split(":")[0])[1].counts[sweep.split(":")[1]]
        finally:
            self.places.put(place)

    def sweep(self, sweep, until):
        count = self.count(sweep)
        tried = passed = 0
        for done in self.pool.map(lambda number: self.at(sweep, number, until), spread(count)):
            passed += done == "passed over"
            if not done or done == "passed over":
                continue
            tried += 1
            if done[1]:
                self.wrong += 1
                print(f"{sweep}, place {done[0]}: {'; '.join(done[1])}\n"
                      f"    again: scripts/faults --sweep {sweep} --place {done[0]}", flush=True)
        self.tried += tried
        let_be = f", {passed} more of Qt and of libraries being loaded were let be" if passed else ""
        print(f"{sweep:42} {tried} of {count} places{let_be}", flush=True)

    def stop(self):
        while not self.places.empty():
            self.places.get().stop_gateway()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kartix")
    parser.add_argument("library")
    parser.add_argument("--seconds", type=int, default=420, help="how long all sweeps may take together")
    parser.add_argument("--sweep", help="one sweep alone, or all whose names begin so")
    parser.add_argument("--place", type=int, help="one place of one sweep")
    wishes = parser.parse_args()
    wanted = [sweep for sweep in SWEEPS if sweep.startswith(wishes.sweep or "")]
    if not wanted or (wishes.place and wishes.sweep not in SWEEPS):
        parser.error("the sweeps are\n" + "\n".join(SWEEPS))
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as directory:
        sweeps = Sweeps(os.path.abspath(wishes.kartix), os.path.abspath(wishes.library), Path(directory))
        try:
            if wishes.place:
                done = sweeps.at(wishes.sweep, wishes.place, float("inf"))
                if not done or done == "passed over":
                    print(done or "no call has failed")
                    return 0
                _, wrong, ended = done
                print(ended.transcript, ended.trace, ended.exchanges, ended.book, ended.out, ended.err, wrong, sep="\n")
                return 1 if wrong else 0
            # Where there are many places, and those are allocations, they are given what time the others leave.
            wanted.sort(key=lambda sweep: "allocation" in sweep)
            for i, sweep in enumerate(wanted):
                now = time.monotonic()
                sweeps.sweep(sweep, now + (start + wishes.seconds - now) / (len(wanted) - i))
        finally:
            sweeps.stop()
    print(f"{sweeps.tried} places, {sweeps.wrong} of them wrong, {time.monotonic() - start:.0f} seconds")
    return 1 if sweeps.wrong or not sweeps.tried else 0


if __name__ == "__main__":
    sys.exit(main())
