#!/usr/bin/env python3
"""Measures how well simulated runs are calibrated and judged, and prints median and worst.

    scripts/measure.py --bin build/release --seeds 200 full
"""
import argparse
import sys

from measuring import accuracy, light, limits, verdicts
from measuring.runs import Programs

EXPERIMENTS = {
    "full": accuracy.full,
    "full-secondary": accuracy.full_secondary,
    "accelerometer": accuracy.accelerometer,
    "foursteps": accuracy.foursteps,
    "tests": verdicts.tests,
    "mistakes": verdicts.mistakes,
    "als": light.als,
    "light-noise": light.light_noise,
    "light-outlier": light.light_outlier,
    "light-lag": light.light_lag,
    "wrong-turn": limits.wrong_turn,
    "sorted-scales": limits.sorted_scales,
    "hard-iron": limits.hard_iron,
    "horizontal-field": limits.horizontal_field,
    "dip-angles": limits.dip_angles,
    "slow-turns": limits.slow_turns,
    "late-dumps": limits.late_dumps,
    "rates": limits.rates,
    "restless-accelerometer": limits.restless_accelerometer,
    "placement": limits.placement,
    "turn-time": limits.turn_time,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", default="build/release", help="the folder of the built programs")
    parser.add_argument("--seeds", type=int, default=200, help="how many runs of each kind")
    parser.add_argument("experiments", nargs="+", choices=[*EXPERIMENTS, "all"])
    arguments = parser.parse_args()
    programs = Programs(arguments.bin)
    wanted = EXPERIMENTS if "all" in arguments.experiments else arguments.experiments
    for name in wanted:
        EXPERIMENTS[name](programs, range(1, arguments.seeds + 1))
        sys.stdout.flush()


if __name__ == "__main__":
    main()
