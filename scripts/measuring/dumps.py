"""Dump files of single sensors, read, changed and written again."""
from pathlib import Path

KINDS = {"A": "Accelerometer", "G": "Gyroscope", "M": "Magnetometer", "L": "AmbientLightSensor"}
LIGHT_HEADER = "LUID=0041000100000002\nFORMFACTOR=2IN1\nHINGE=BOTTOM\ntime[ms],AmbientLightSensor_0[lux]\n"


def dump_path(folder, sensor):
    return Path(folder) / f"dataDump{sensor}.csv"


def read_dump(path):
    """The lines in front of the samples, and a list of [time, values] rows."""
    lines = path.read_text().splitlines()
    first = next(i for i, line in enumerate(lines) if line.startswith("time")) + 1
    numbers = [[float(field) for field in line.split(",")] for line in lines[first:]]
    return "\n".join(lines[:first]) + "\n", [[row[0], row[1:]] for row in numbers]


def write_dump(path, header, rows):
    lines = [",".join(f"{number:f}" for number in [time, *values]) for time, values in rows]
    path.write_text(header + "\n".join(lines) + "\n")


def change_dump(folder, sensor, change):
    """Replaces the rows of a sensor's dump by what `change` makes of them."""
    path = dump_path(folder, sensor)
    header, rows = read_dump(path)
    write_dump(path, header, change(rows))


def distorted(matrix, offset):
    """A change that makes each reading matrix * reading + offset."""
    def change(rows):
        return [[time, [sum(row[k] * values[k] for k in range(3)) + shift
                        for row, shift in zip(matrix, offset)]] for time, values in rows]
    return change


def delayed(milliseconds):
    return lambda rows: [[time + milliseconds, values] for time, values in rows]


def thinned(factor):
    return lambda rows: rows[::factor]


def light_folder(folder, levels, sensors):
    """Hand-made dumps of light sensors: rows by the sensor's place, 0 or 1; and the level file."""
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for instance, rows in sensors.items():
        header = LIGHT_HEADER.replace("0041000100000002", f"00410001000{'0'}{instance:02d}02")
        header = header.replace("AmbientLightSensor_0", f"AmbientLightSensor{'_2' * instance}_0")
        name = KINDS["L"] + ("_2" if instance else "")
        write_dump(dump_path(folder, name), header, rows)
    values = ",".join(str(level) for level in levels)
    (folder / "als.txt").write_text(f"values={values}\ndelay_time=5\n")
