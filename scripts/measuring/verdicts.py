"""Whether good devices pass, and what the tool says of faults and mistakes."""
import re

from measuring.dumps import KINDS
from measuring.accuracy import QUIET, compare_all
from measuring.runs import recording_folder, truth_of
from measuring.tables import Figures

FOUR_STEPS = ("foursteps", "AG", "-FourSteps")
FACE_UP = ("minimal", "AG", "-Minimal")
COMPASS = ("magaccuracy", "M", "-MagAccuracyTest")

# The run, the fault, its sensor, and the tests on the console that one would expect to fail, and no
# other. Where the method can't name the fault, the table shows it.
FAULTS = [
    (FOUR_STEPS, None, "A", set()),
    (FACE_UP, None, "A", set()),
    (COMPASS, None, "M", set()),
    (FOUR_STEPS, "wrong-mounting", "A", {"Mean value"}),
    (FOUR_STEPS, "wrong-mounting", "G", {"gyro rotation"}),
    (FOUR_STEPS, "noisy", "A", {"Std value"}),
    (FOUR_STEPS, "noisy", "G", {"Std value"}),
    (FOUR_STEPS, "spiky", "A", {"Spikes"}),
    (FOUR_STEPS, "spiky", "G", {"Spikes"}),
    (FOUR_STEPS, "gyro-scale-10", "G", {"Gravity rotation"}),
    (FACE_UP, "wrong-mounting", "A", {"Average"}),
    (FACE_UP, "noisy", "A", {"Noise"}),
    (FACE_UP, "noisy", "G", {"Noise"}),
    (FACE_UP, "spiky", "A", {"Spikes"}),
    (FACE_UP, "spiky", "G", {"Spikes"}),
    (COMPASS, "noisy", "M", {"Std value"}),
    (COMPASS, "elliptic-mag", "M", {"Magnet scale"}),
    (COMPASS, "heading-30", "M", {"Compass direction"}),
]

FAILED_TESTS = re.compile(r"Error in .*?(Mean value|Std value|gyro rotation|Gravity rotation|"
                          r"Magnetometer rotation|static values|Magnetometer values|"
                          r"Compass direction|Magnet scale) test|"
                          r"(Noise) on|(Average) value|(Spikes) number|(Spike) detection")


def failed_tests(text):
    names = {next(name for name in found if name) for found in FAILED_TESTS.findall(text)}
    return {"Spikes" if name == "Spike" else name for name in names}


def judge(programs, seed, run, fault, sensor):
    flow, letters, option = run
    with recording_folder() as folder:
        mistake = ["--mistake", fault, "--faulty-sensor", sensor] if fault else []
        programs.record(folder, "--flow", flow, "--perfect", "--seed", seed, "--sensors",
                        "AM" if letters == "M" else letters, *QUIET, *mistake)
        outcome = programs.test(folder, letters, option)
        summary = re.findall(r"^\d\t.*", outcome.text, re.M)
        failed = outcome.report().count("<!-- FAILED-->") + outcome.report().count("FAILED-->")
        return outcome, failed_tests(outcome.text), summary, failed


def tests(programs, seeds):
    for run, fault, sensor, expected in FAULTS:
        figures = Figures(f"{run[2]}, {fault or 'good device'} {KINDS[sensor] if fault else ''}, "
                          f"expected to fail: {', '.join(sorted(expected)) or 'nothing'}")
        for seed in seeds:
            outcome, failed, summary, comments = judge(programs, seed, run, fault, sensor)
            as_told = failed == expected and (outcome.status == 0) == (not expected)
            complaint = (f"failed: {', '.join(sorted(failed)) or 'none named'}; exit status "
                         f"{outcome.status}; summary: {'; '.join(summary) or 'empty'}; FAILED "
                         f"comments: {'some' if comments else 'none'}")
            if not as_told:
                complaint = "NOT AS EXPECTED: " + complaint
            figures.count(complaint, f"seed {seed}")
        figures.print()


MISTAKES = ["none", "half-turn", "skipped-turn", "magnet", "silent-sensor", "cut-short",
            "wrong-turn", "wrong-position", "moved-device"]


def calibrate_with_mistake(programs, figures, seed, mistake):
    name, *options = mistake.split(" ", 1)
    with recording_folder() as folder:
        programs.record(folder, "--flow", "full", "--seed", seed, *QUIET, "--mistake", name,
                        *(options[0].split() if options else []))
        outcome = programs.calibrate(folder, "AGM")
        figures.count(outcome.complaint or "ends in a calibration", f"seed {seed}")
        if outcome.passed:
            compare_all(figures, outcome, truth_of(folder), "AGM")


def mistakes(programs, seeds):
    variants = MISTAKES + [f"{name} --mistake-stage {stage}" for name, stages in
                           (("half-turn", (2, 6)), ("skipped-turn", (2, 6)),
                            ("wrong-turn", (2, 6)), ("magnet", (1, 2, 3, 4, 6, 7)),
                            ("cut-short", (1, 7)))
                           for stage in stages]
    variants += [f"silent-sensor --faulty-sensor {letter} --mistake-stage {stage}"
                 for letter in "AGM" for stage in (3, 5, 7)]
    for mistake in variants:
        figures = Figures("full, mistake " + mistake)
        for seed in seeds:
            calibrate_with_mistake(programs, figures, seed, mistake)
        figures.print()
