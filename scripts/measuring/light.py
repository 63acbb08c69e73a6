"""Ambient light: the factor of simulated and of hand-made runs."""
import random

from measuring.dumps import light_folder
from measuring.runs import recording_folder
from measuring.tables import Figures

STEP_MS = 20.0


def measure_gain(programs, seeds, title, gain_of, *options):
    figures = Figures(title)
    for seed in seeds:
        with recording_folder() as folder:
            gain = gain_of(seed)
            programs.record(folder, "--flow", "als", "--seed", seed, "--gain", gain, *options)
            outcome = programs.light(folder)
            figures.count(outcome.complaint, f"seed {seed}")
            if outcome.passed:
                error = outcome.multiplier() - 1.0 / gain
                figures.add("factor's error", abs(error), "1", 0.01)
                figures.add("factor too large by", error, "1")
    figures.print()


def als(programs, seeds):
    measure_gain(programs, seeds, "als, gain 0.5, noise 0.5 lux", lambda _: 0.5,
                 "--noise-light", 0.5)
    measure_gain(programs, seeds, "als, gains 0.3 to 3",
                 lambda seed: round(random.Random(seed).uniform(0.3, 3.0), 4))
    measure_gain(programs, seeds, "als, falling levels", lambda _: 0.5,
                 "--levels", "2000,1000,500")
    measure_gain(programs, seeds, "als, two sensors", lambda _: 0.5, "--secondary")
    # 350 readings of a restless last level take 7 s; no earlier level may last longer than that.
    for mistake, hold in (("stuck-light", 6), ("unstable", 6.7), ("cut-short", 4), ("dark", 6)):
        measure_gain(programs, list(seeds)[:20], "als, mistake " + mistake, lambda _: 0.5,
                     "--mistake", mistake, "--hold", hold)


def light_noise(programs, seeds):
    for noise in (1.0, 1.2, 1.4, 1.6, 1.8, 2.0):
        measure_gain(programs, seeds, f"als, noise {noise} lux", lambda _: 1.0, "--flicker", 0,
                     "--noise-light", noise)


def steady(levels, samples_each, start=0.0):
    """Rows of a light that jumps from level to level."""
    values = [float(level) for level in levels for _ in range(samples_each)]
    return [[start + STEP_MS * i, [value]] for i, value in enumerate(values)]


def run_light(programs, title, levels, sensors):
    figures = Figures(title)
    with recording_folder() as folder:
        light_folder(folder, levels, sensors)
        outcome = programs.light(folder)
        figures.count(outcome.complaint or outcome.text.split("finished\n")[1].split("Saving")[0]
                      .replace("\n", "; "), "hand-made dump")
    figures.print()


def light_outlier(programs, _):
    levels = [500, 1000, 2000]
    read = [250, 500, 1000]
    clean = steady(read, 250)
    for size in (4.0, 6.0):
        rows = steady(read, 250)
        rows[110][1][0] += size
        run_light(programs, f"als, one reading off by {size} lux behind the first stage", levels,
                  {0: rows})
    run_light(programs, "als, no reading off", levels, {0: clean})


def light_lag(programs, _):
    levels = [500, 1000, 2000]
    read = [250, 500, 1000]
    for lag in (0.0, 6.0, 100.0, 500.0, 1000.0, 2000.0):
        second = steady(read, 250, start=lag)
        run_light(programs, f"als, second sensor's dump begins {lag:g} ms late", levels,
                  {0: steady(read, 250), 1: second})
    run_light(programs, "als, first sensor's dump begins 1000 ms late", levels,
              {0: steady(read, 250, start=1000.0), 1: steady(read, 250)})
    slow = [[40.0 * i, row[1]] for i, row in enumerate(steady(read, 125))]
    run_light(programs, "als, second sensor at half the rate", levels,
              {0: steady(read, 250), 1: slow})
