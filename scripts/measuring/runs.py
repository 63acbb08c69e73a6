"""Runs of the simulator and of the tool, and what they say."""
import re
import subprocess
import tempfile
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

from measuring import linear


@dataclass
class Solution:
    """calibrated = matrix * (reading - offset)"""
    offset: list
    scale: list
    axes: list

    @property
    def matrix(self):
        return linear.product(self.scale, self.axes)


@dataclass
class Outcome:
    status: int
    text: str
    folder: Path

    @property
    def passed(self):
        return self.status == 0 and not self.complaint

    @property
    def complaint(self):
        """What the tool says of a failed run: all behind the line that reports the end."""
        lines = [line.strip() for line in self.text.splitlines()]
        return " / ".join(line for line in lines if line and not is_usual(line))

    def solution(self, sensor):
        title = "Second " + sensor[:-2] if sensor.endswith("_2") else sensor
        return Solution(numbers_behind(self.text, title + " Offset:", 1)[0],
                        numbers_behind(self.text, title + " Scale:", 3),
                        numbers_behind(self.text, title + " Axis mapping:", 3))

    def multiplier(self):
        return float(re.search(r"Multiplier/Divider: (\S+)", self.text).group(1))

    def report(self):
        return "".join(path.read_text() for path in sorted(self.folder.glob("*LogFile.xml")))


USUAL = re.compile(r"Tavo Calibration Tool|Version|Sensors to calibrate|[0-9a-f]{16}, |Loading data|"
                   r"data collection finished|Saving calibration|Total run time|Calibration process "
                   r"completed|Completed succ|----   test pass|Stage \d+ multiplier|Multiplier|"
                   r"Divider|(Second )?(Accel|Gyro|Magn)\w+ (Offset|Scale|Axis)|[-\d. ]+$")


def is_usual(line):
    return USUAL.match(line) is not None


def numbers_behind(text, title, rows):
    lines = text.splitlines()
    first = next(i for i, line in enumerate(lines) if line == title) + 1
    return [[float(word) for word in re.findall(r"-?(?:\d+\.\d+|nan|inf)", line)]
            for line in lines[first:first + rows]]


class Programs:
    """The two programs of a build."""

    def __init__(self, folder):
        self.simulator = find_program(folder, "tavosim", "simulator")
        self.tool = find_program(folder, "tavocal", "src/app")

    def record(self, folder, *options):
        arguments = [self.simulator, "record", "--out", folder, *options]
        subprocess.run([str(argument) for argument in arguments], check=True)

    def calibrate(self, folder, sensors, *options):
        return self._run(folder, "-CalibrateOffline", sensors, *options)

    def test(self, folder, sensors, *options):
        return self._run(folder, "-TestCalibration", sensors, *options)

    def light(self, folder):
        return self._run(folder, "-CalibrateOffline", "ALS", "-Auto", Path(folder) / "als.txt")

    def _run(self, folder, *options):
        results = Path(folder).parent / "results"
        arguments = [self.tool, *options, "-UseRawData", folder, "-ExportAllFiles", results]
        done = subprocess.run([str(argument) for argument in arguments], cwd=Path(folder).parent,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=120, check=False)
        return Outcome(done.returncode, done.stdout, results)


def find_program(folder, name, *places):
    root = Path(folder).resolve()
    for path in [root / name, *(root / place / name for place in places), *root.glob(f"*/{name}")]:
        if path.is_file():
            return path
    raise SystemExit(f"There is no {name} in {folder}")


@contextmanager
def recording_folder():
    with tempfile.TemporaryDirectory(prefix="measure-") as folder:
        yield Path(folder) / "dumps"


def truth_of(folder):
    """What the simulator wrote down, by sensor."""
    pairs = dict(line.split("=", 1) for line in (folder / "truth.txt").read_text().splitlines())
    numbers = {key: [float(word) for word in value.split()]
               for key, value in pairs.items() if re.search(r"\.(offset|scale|axis_mapping)$", key)}
    names = {key.split(".")[0] for key in numbers}
    return {name: Solution(numbers[name + ".offset"], linear.rows_of(numbers[name + ".scale"]),
                           linear.rows_of(numbers[name + ".axis_mapping"])) for name in names}
