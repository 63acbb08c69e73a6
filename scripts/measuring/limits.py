"""What the method can't see or can't do."""
import math
import time

from measuring import linear
from measuring.accuracy import QUIET, compare, compare_all, measure
from measuring.dumps import KINDS, change_dump, delayed, distorted, thinned
from measuring.runs import Solution, recording_folder, truth_of
from measuring.tables import Figures


def changed_run(programs, seeds, title, letters, options, change, tool_options=()):
    """Calibrates recordings whose dumps `change` has altered, against the recordings' truth."""
    figures = Figures(title)
    for seed in seeds:
        with recording_folder() as folder:
            programs.record(folder, "--seed", seed, *options)
            change(folder)
            outcome = programs.calibrate(folder, letters, *tool_options)
            figures.count(outcome.complaint, f"seed {seed}")
            if outcome.passed:
                compare_all(figures, outcome, truth_of(folder), letters)
    figures.print()


def sorted_scales(programs, seeds):
    """Three gyroscope scales in an order that the singular values don't have."""
    for scales in ([1.03, 0.99, 0.95], [0.95, 0.99, 1.03], [0.99, 1.03, 0.95]):
        truth = Solution([0.0, 0.0, 0.0], linear.diagonal(scales), linear.IDENTITY)
        figures = Figures(f"four steps, true gyroscope scales {scales}")
        for seed in seeds:
            with recording_folder() as folder:
                programs.record(folder, "--flow", "foursteps", "--perfect", "--sensors", "AG",
                                "--seed", seed, *QUIET)
                change_dump(folder, KINDS["G"],
                            distorted(linear.inverse(truth.matrix), truth.offset))
                outcome = programs.calibrate(folder, "AG", "-FourSteps")
                found = outcome.solution(KINDS["G"]).scale if outcome.passed else linear.IDENTITY
                figures.count(outcome.complaint, f"seed {seed}")
                for axis in range(3):
                    figures.add(f"scale found, {'XYZ'[axis]}", found[axis][axis], "1")
                compare(figures, "G", outcome.solution(KINDS["G"]), truth)
        figures.print()


def compass_run(programs, figures, seed, options, offset=(0.0, 0.0, 0.0)):
    with recording_folder() as folder:
        programs.record(folder, "--flow", "magaccuracy", "--perfect", "--sensors", "AM", "--seed",
                        seed, *QUIET, *options)
        change_dump(folder, KINDS["M"], distorted(linear.IDENTITY, offset))
        outcome = programs.test(folder, "M", "-MagAccuracyTest")
        figures.count(outcome.complaint, f"seed {seed}")


def hard_iron(programs, seeds):
    for size in (300.0, 1000.0, 5000.0):
        figures = Figures(f"compass test, hard iron of {size:g} mG along each axis")
        for seed in seeds:
            compass_run(programs, figures, seed, [], [size] * 3)
        figures.print()


def horizontal_field(programs, seeds):
    for horizontal in (240, 225, 215, 213, 212, 211, 210, 200, 150):
        dip = math.degrees(math.acos(horizontal / 480.0))
        figures = Figures(f"compass test, horizontal field {horizontal} mG (dip {dip:.1f})")
        for seed in seeds:
            compass_run(programs, figures, seed, ["--dip", dip])
        figures.print()


def dip_angles(programs, seeds):
    for dip in (85, 75, 60, 45, 30, 20, 15, 10, 5, 0, -5, -15, -30, -60, -75):
        measure(programs, seeds, f"full, dip {dip}", "AGM",
                ["--flow", "full", *QUIET, "--dip", dip])


def slow_turns(programs, seeds):
    for seconds in (6, 15, 30, 40, 50, 60, 90):
        for letters in ("AGM", "AG"):
            measure(programs, seeds, f"full, {letters}, turns of {seconds} s", letters,
                    ["--flow", "full", "--sensors", letters, *QUIET, "--turn", seconds])


def late_dumps(programs, seeds):
    for late in (0, 90, 100, 110, 500, 1000, 1090, 1100, 1110, 1500, 5000):
        def change(folder, shift=late):
            for letter in "AGM":
                change_dump(folder, KINDS[letter], delayed(shift))
        changed_run(programs, seeds, f"full, dumps begin {late} ms late", "AGM",
                    ["--flow", "full", *QUIET], change)


def rates(programs, seeds):
    for factors in ({"A": 1, "G": 1, "M": 1}, {"A": 1, "G": 1, "M": 2}, {"A": 1, "G": 1, "M": 5},
                    {"A": 2, "G": 1, "M": 1}, {"A": 5, "G": 1, "M": 1}, {"A": 1, "G": 2, "M": 1},
                    {"A": 1, "G": 4, "M": 1}, {"A": 1, "G": 1, "M": 10}, {"A": 1, "G": 1, "M": 20},
                    {"A": 20, "G": 1, "M": 1}, {"A": 1, "G": 20, "M": 1}):
        def change(folder, thin=factors):
            for letter, factor in thin.items():
                change_dump(folder, KINDS[letter], thinned(factor))
        told = ", ".join(f"{letter} {100 // factor} Hz" for letter, factor in factors.items())
        changed_run(programs, seeds, "full, " + told, "AGM", ["--flow", "full", *QUIET], change)


def restless_accelerometer(programs, seeds):
    """From which noise on a four-step test finds no stage any more."""
    for noise in (0.005, 0.010, 0.012, 0.014, 0.016, 0.018, 0.03):
        figures = Figures(f"four-step test, accelerometer's noise {noise} g")
        for seed in seeds:
            with recording_folder() as folder:
                programs.record(folder, "--flow", "foursteps", "--perfect", "--sensors", "AG",
                                "--seed", seed, "--noise-acc", noise)
                outcome = programs.test(folder, "AG", "-FourSteps")
                figures.count(outcome.complaint, f"seed {seed}")
        figures.print()


def placement(programs, seeds):
    for degrees in (0.1, 0.2, 0.5, 1.0):
        measure(programs, seeds, f"full, positions met within {degrees} degrees", "AGM",
                ["--flow", "full", *QUIET, "--placement", degrees])


def wrong_turn(programs, seeds):
    for stage in (2, 4, 6):
        measure(programs, seeds, f"full, turn of stage {stage} the wrong way round", "AGM",
                ["--flow", "full", *QUIET, "--mistake", "wrong-turn", "--mistake-stage", stage])


def turn_time(programs, seeds):
    """How the time of a replay grows with the length of turns that only a magnetometer sees."""
    for seconds in (15, 30, 60, 120):
        figures = Figures(f"full, AM only, turns of {seconds} s")
        for seed in list(seeds)[:5]:
            with recording_folder() as folder:
                programs.record(folder, "--flow", "full", "--sensors", "AM", "--turn", seconds,
                                "--seed", seed, *QUIET)
                begin = time.perf_counter()
                outcome = programs.calibrate(folder, "AM")
                figures.add("time of the run", 1000.0 * (time.perf_counter() - begin), "ms")
                figures.count(outcome.complaint, f"seed {seed}")
        figures.print()
