"""Calibrations held against what the simulator knows."""
import random

from measuring import linear
from measuring.dumps import KINDS, change_dump, distorted
from measuring.runs import Solution, recording_folder, truth_of
from measuring.tables import Figures

QUIET = ["--noise-acc", 0.002, "--noise-gyro", 0.05, "--noise-mag", 1]
OFFSET_UNITS = {"A": "g", "G": "deg/s", "M": "mG"}
OFFSET_LIMITS = {"A": 0.002, "G": 0.05, "M": 5.0}
SCALE_LIMITS = {"A": 0.3, "G": 0.5, "M": 2.0}
AXIS_LIMIT = 1.0


def compare(figures, letter, found, truth, mark=""):
    """Adds the errors of one sensor. A magnetometer knows its scale up to one factor only."""
    name = letter + mark
    true_matrix = truth.matrix
    if letter == "M":
        factor = linear.common_factor(found.matrix, true_matrix)
        true_matrix = linear.scaled(true_matrix, factor)
    figures.add(name + " offset", linear.largest_difference(found.offset, truth.offset),
                OFFSET_UNITS[letter], OFFSET_LIMITS[letter])
    figures.add(name + " scale", 100.0 * linear.scale_error(found.matrix, true_matrix), "%",
                SCALE_LIMITS[letter])
    figures.add(name + " elements", 100.0 * linear.largest_difference(found.matrix, true_matrix),
                "%", SCALE_LIMITS[letter] if letter == "A" else None)
    figures.add(name + " axes", linear.axis_error(found.matrix, true_matrix), "deg", AXIS_LIMIT)


def compare_all(figures, outcome, truths, letters, marks=("",)):
    for letter in letters:
        for mark in marks:
            sensor = KINDS[letter] + mark
            if sensor + " Offset:" in outcome.text or mark:
                compare(figures, letter, outcome.solution(sensor), truths[sensor], mark)


def measure(programs, seeds, title, letters, record_options, tool_options=(), marks=("",)):
    """Records and calibrates with every seed."""
    figures = Figures(title)
    for seed in seeds:
        with recording_folder() as folder:
            programs.record(folder, "--seed", seed, *record_options)
            outcome = programs.calibrate(folder, letters, *tool_options)
            figures.count(outcome.complaint, f"seed {seed}")
            if outcome.passed:
                compare_all(figures, outcome, truth_of(folder), letters, marks)
    figures.print()


def random_errors(seed):
    """Errors as large as the worst that a good device may have: 10 % in the magnetometer's scale and
    soft iron, a hard iron of 300 mG; 3 % in the gyroscope's scale, a bias of 2 deg/s."""
    chance = random.Random(seed)

    def solution(scale, cross, offset):
        matrix = [[1.0 + chance.choice([-scale, scale]) if r == c else chance.uniform(-cross, cross)
                   for c in range(3)] for r in range(3)]
        direction = [chance.gauss(0.0, 1.0) for _ in range(3)]
        return Solution([offset * x / linear.norm(direction) for x in direction], matrix,
                        linear.IDENTITY)

    return {"A": solution(0.03, 0.01, 0.05), "G": solution(0.03, 0.01, 2.0),
            "M": solution(0.10, 0.10, 300.0)}


def distort(folder, errors):
    """Gives the sensors of a perfect recording the errors that `errors` tells."""
    for letter, truth in errors.items():
        change_dump(folder, KINDS[letter], distorted(linear.inverse(truth.matrix), truth.offset))


def full_with_large_errors(programs, seeds):
    figures = Figures("full, errors of 10 % (M), 3 % (G), 2 deg/s, 300 mG in every run")
    for seed in seeds:
        with recording_folder() as folder:
            programs.record(folder, "--flow", "full", "--perfect", "--seed", seed, *QUIET)
            errors = random_errors(seed)
            distort(folder, errors)
            outcome = programs.calibrate(folder, "AGM")
            figures.count(outcome.complaint, f"seed {seed}")
            if outcome.passed:
                for letter, truth in errors.items():
                    compare(figures, letter, outcome.solution(KINDS[letter]), truth)
    figures.print()


def full(programs, seeds):
    measure(programs, seeds, "full", "AGM", ["--flow", "full", *QUIET])
    full_with_large_errors(programs, seeds)
    measure(programs, seeds, "full, no trembling, exact times", "AGM",
            ["--flow", "full", *QUIET, "--tremor", 0, "--jitter", 0, "--microseconds"])
    measure(programs, seeds, "full, positions met within 1 degree", "AGM",
            ["--flow", "full", *QUIET, "--placement", 1])


def full_secondary(programs, seeds):
    places = [("2IN1", hinge) for hinge in ("BOTTOM", "TOP", "LEFT", "RIGHT")]
    places += [("MID", hinge) for hinge in ("BOTTOM", "TOP", "LEFT", "RIGHT")]
    for form, hinge in places:
        measure(programs, seeds, f"full, secondary, {form} {hinge}", "AGM",
                ["--flow", "full", *QUIET, "--secondary", "--form-factor", form, "--hinge", hinge],
                marks=("", "_2"))
    measure(programs, list(seeds)[:3], "full, secondary, TABLET", "AGM",
            ["--flow", "full", *QUIET, "--secondary", "--form-factor", "TABLET"])


def accelerometer(programs, seeds):
    noise = ["--noise-acc", 0.002]
    measure(programs, seeds, "accelerometer flow, A", "A",
            ["--flow", "accelerometer", "--sensors", "A", *noise])
    measure(programs, seeds, "full flow, A", "A", ["--flow", "full", "--sensors", "AG", *noise])
    measure(programs, seeds, "accelerometer flow, A, positions met within 1 degree", "A",
            ["--flow", "accelerometer", "--sensors", "A", *noise, "--placement", 1])


def foursteps(programs, seeds):
    for cross in (["--no-cross-axis"], []):
        title = "four steps, " + ("no cross-axis errors" if cross else "cross-axis errors up to 1 %")
        measure(programs, seeds, title, "A", ["--flow", "foursteps", "--sensors", "A",
                                              "--noise-acc", 0.002, *cross], ["-FourSteps"])
        measure(programs, seeds, title, "AG", ["--flow", "foursteps", "--sensors", "AG",
                                               *QUIET, *cross], ["-FourSteps"])
