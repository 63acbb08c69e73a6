#!/usr/bin/env python3
"""Ends live runs by signals and checks what they leave: scripts/faults.py --bin build/release

After each: the process has ended within 10 s, with the status that it should have and the right
last line; no file is there by half; the device has all of its new blocks or none.
"""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile
import time

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
LIMIT = 10.0
# Seconds until a run with a fault of the firmware has come to it, or has ended.
FAULT_SHOWS = 2.0
RUN_IS_OVER = "Total run time (excluding"

FLOWS = {
    "full": "-Calibrate AGM -UpdateTavo -ExportAllFiles out",
    "four steps": "-Calibrate AG -FourSteps -UpdateTavo -ExportAllFiles out",
    "minimal": "-TestCalibration AG -Minimal -ExportAllFiles out",
    "test": "-TestCalibration AG -FourSteps -ExportAllFiles out",
    "mag test": "-MagTest -ExportAllFiles out",
    "light": "-Calibrate als -UpdateTavo -ExportAllFiles out",
    "export": "-ExportXml all.xml",
}

# A short time in a flow: up to so many seconds behind the bell of the last step.
MOMENTS = {
    "blocks and last words": ("full", "DOWN, Z axis directed to South\nHold system in current "
                              "position\n\a", 0.03),
    "last words of a failure": ("minimal", "Press Enter when done\n\a", 0.01),
}

# What a whole file ends with.
ENDS = {".csv": b"\n", ".xml": b">\r\n"}

# What stands in a file's place, for the flow "minimal".
PLACES = {
    "pipe for a dump": (os.mkfifo, "dataDumpAccelerometer.csv"),
    "pipe for the report": (os.mkfifo, "LogFile.xml"),
    "folder for a dump": (os.mkdir, "dataDumpGyroscope.csv"),
}

Case = collections.namedtuple("Case", "name flow fault place signal moment")


def fault_names(programs):
    usage = subprocess.run([programs["tavosim"], "run", "--help"], capture_output=True, text=True)
    table = usage.stdout[usage.stdout.index("Faults of the firmware:"):].splitlines()[1:]
    commands = table.pop().split(":")[1].split()
    for name in (line.split()[0] for line in table):
        whole = name.endswith("COMMAND")
        yield from ([name.replace("COMMAND", c) for c in commands] if whole else [name])


def cases(programs, rounds, whole_runs):
    chance = random.Random(11)
    for flow in FLOWS:
        for number in range(rounds):
            moment = chance.uniform(0, whole_runs[flow].seconds)
            yield Case(flow, flow, "none", None, SIGNALS[number % 3], moment)
    for name, (flow, text, longest) in MOMENTS.items():
        for number in range(3 * rounds):
            moment = (text, chance.uniform(0, longest))
            yield Case(name, flow, "none", None, SIGNALS[number % 3], moment)
    for number, fault in enumerate(fault_names(programs)):
        moment = chance.uniform(0.2, FAULT_SHOWS)
        yield Case(fault, "full", fault, None, SIGNALS[number % 3], moment)
    for number, place in enumerate(PLACES):
        yield Case(place, "minimal", "none", place, SIGNALS[number % 3], FAULT_SHOWS)


class Run:
    def __init__(self, programs, case, folder):
        self.case, self.folder = case, folder
        self.words = [programs["tavosim"], "run", "--device", "device.txt", "--speed", "100",
                      "--fault", case.fault, "--fault-after", "1", "--",
                      programs["tavocal"], *FLOWS[case.flow].split()]

    def start(self):
        self.begin = time.monotonic()
        self.text = ""
        self.process = subprocess.Popen(self.words, cwd=self.folder, stdout=subprocess.PIPE,
                                        stdin=subprocess.DEVNULL, stderr=subprocess.STDOUT)

    def read(self, until=None):
        while until is None or until not in self.text:
            part = os.read(self.process.stdout.fileno(), 65536).decode()
            if not part:
                break
            self.text += part

    def finish(self):
        self.start()
        self.read()
        self.process.wait()
        return time.monotonic() - self.begin

    def interrupt(self):
        """Seconds from the signal to the end."""
        self.start()
        text, delay = self.case.moment if isinstance(self.case.moment, tuple) else \
            ("Version", self.case.moment)
        self.read(until=text)
        time.sleep(delay)
        sent = time.monotonic()
        self.process.send_signal(self.case.signal)
        self.read()
        self.process.wait()
        return time.monotonic() - sent

    def device(self):
        path = pathlib.Path(self.folder, "device.txt")
        return dict(re.findall(r"^(block\.\w+)=(.*)$", path.read_text(), re.M))

    def changed(self, before):
        return {name for name, block in self.device().items() if before.get(name) != block}

    def faults(self, seconds, before, all_changed):
        number = int(self.case.signal)
        status, last = self.process.returncode, self.text.rstrip("\n").rsplit("\n", 1)[-1]
        interrupted = f"Interrupt signal ({number}) received." in self.text
        if seconds > LIMIT:
            yield f"{seconds:.1f} s"
        if interrupted and RUN_IS_OVER in self.text:
            yield "interrupted though the run was over"
        if status == -number and not interrupted:
            return  # the tool had ended, and the signal met the simulator
        if interrupted and status != number or not interrupted and status not in (0, 255):
            yield f"status {status}"
        if (status == 0) != (RUN_IS_OVER in self.text):
            yield "status 0 without the run's times, or the other way round"
        # A thread that hangs in the midst of a file leaves the last resort no word.
        hangs = self.case.place is not None and "pipe" in self.case.place
        if interrupted and last != "Abort request" and not hangs:
            yield f"last line {last!r}"
        for path in pathlib.Path(self.folder).rglob("*"):
            if ".new" in path.name or path.is_file() and not is_whole(path):
                yield f"half file {path.name}"
        changed = self.changed(before)
        if interrupted and changed not in (set(), all_changed):
            yield f"mixed calibration: {len(changed)} of {len(all_changed)} blocks"


def is_whole(path):
    return path.read_bytes().rstrip(b"\0").endswith(ENDS.get(path.suffix, b""))


def run_case(programs, case, whole_runs):
    whole = whole_runs[case.flow]
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "device.txt").write_text(whole.device_text)
        if case.place is not None:
            make, name = PLACES[case.place]
            os.mkdir(os.path.join(folder, "out"))
            make(os.path.join(folder, "out", name))
        run = Run(programs, case, folder)
        before = run.device()
        seconds = run.interrupt()
        return seconds, list(run.faults(seconds, before, whole.changed)), run.text


WholeRun = collections.namedtuple("WholeRun", "device_text changed seconds")


def whole_run(programs, flow):
    """One that nobody disturbs, on a device that a first one has made."""
    with tempfile.TemporaryDirectory() as folder:
        device = pathlib.Path(folder, "device.txt")
        run = Run(programs, Case(flow, "export", "none", None, None, None), folder)
        run.finish()
        text, before = device.read_text(), run.device()
        run = Run(programs, Case(flow, flow, "none", None, None, None), folder)
        seconds = run.finish()
        return WholeRun(text, run.changed(before), seconds)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", default="build/release", help="the folder of the built programs")
    parser.add_argument("--rounds", type=int, default=30, help="moments of each flow")
    parser.add_argument("--only", default="", help="cases whose name holds this text")
    parser.add_argument("--jobs", type=int, default=4, help="runs at a time; most of them wait")
    arguments = parser.parse_args()
    folder = pathlib.Path(arguments.bin).resolve()
    programs = {"tavocal": str(folder / "tavocal"), "tavosim": str(folder / "simulator/tavosim")}
    whole_runs = {flow: whole_run(programs, flow) for flow in FLOWS}

    table = collections.defaultdict(lambda: [0, 0, 0, 0.0])
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        wanted = [case for case in cases(programs, arguments.rounds, whole_runs)
                  if arguments.only in case.name]
        runs = pool.map(lambda case: run_case(programs, case, whole_runs), wanted)
        for case, (seconds, faults, text) in zip(wanted, runs):
            row = table[case.name]
            row[0] += 1
            row[1] += "Interrupt signal" in text
            row[2] += bool(faults)
            row[3] = max(row[3], seconds)
            if faults:
                print(f"{case.name}, {case.signal.name} at {case.moment}: {'; '.join(faults)}\n"
                      f"    {text[-300:]!r}", flush=True)

    for name, (count, interrupted, failed, longest) in table.items():
        print(f"{name:28}{count:5} runs {interrupted:5} interrupted {failed:4} failed   "
              f"longest {longest:5.2f} s")
    failed = sum(row[2] for row in table.values())
    print(f"{sum(row[0] for row in table.values())} runs, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
