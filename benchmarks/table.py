"""Runs the benchmarks of a build, measures zvcam and the libraries, and prints one table.

table.py BUILD ARM64_LIBRARY RESULTS: the build folder of the preset "bench"; the plug-in for 64-bit Arm; a JSON file with
the ratios of the last time, which this time's replace.
"""

import json
import os
import random
import re
import statistics
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from typing import Optional

# Once more than this, of what stands beside it.
AIM_START = 1.25
AIM_FLAT = 1.10
AIM_REPORT = 2.0
LIBRARY_LIMIT = 200 * 1024
REPETITIONS = 15
FURTHER = (8, 64, 512, 4096)

HALCYRION = "phones/halcyrion.json"
FIELDTROUBLE = "phones/fieldtrouble.json"
# An example of each command; {0} is a folder with the files of PREPARATION, {1} differs each time.
PREPARATION = [
    "run phones/halcyrion.json --json {0}/report.json",
    "run phones/halcyrion.json --set vendor.debug.camera.eeprom_dump=1 --root {0}/root --json {0}/dumped.json",
    "fleet make --count 8 -q -o {0}/fleet",
    "fleet run {0}/fleet --jobs 1 -q --db {0}/fleet.db",
]
COMMANDS = {
    "run": f"run {HALCYRION}",
    "run --all": f"run {HALCYRION} --all",
    "run --json": f"run {HALCYRION} --json {{0}}/out.json",
    "run --html": f"run {HALCYRION} --html {{0}}/out.html",
    "run, of a report": "run {0}/report.json",
    "getprop": f"getprop {HALCYRION}",
    "dumpsys": f"dumpsys {HALCYRION}",
    "logcat": f"logcat {HALCYRION}",
    "streams": f"streams {HALCYRION}",
    "why": f"why {HALCYRION} ZELVAN_CAMERA_ROLEID",
    "diff": f"diff {HALCYRION} {FIELDTROUBLE}",
    "eeprom": "eeprom {0}/root/data/vendor/camera/eeprom_raw_data_dump_back_main",
    "calibration": "calibration {0}/root/mnt/vendor/persist/camera",
    "calibration seal": "calibration seal {0}/root/mnt/vendor/persist/camera/com.zelvan.dcal.wu.bin - --force",
    "calibration make-dual": "calibration make-dual --master 0102 --fill 1 --size 4096 -o -",
    "calibration make-ois": "calibration make-ois --fuse-id 0102 --gain-x 1 --gain-y 2 -o -",
    "phone check": f"phone check {HALCYRION}",
    "phone new": "phone new",
    "phone from-device": "phone from-device {0}/root -o {0}/pulled.json --force",
    "phone schema": "phone schema",
    "fleet make": "fleet make --count 8 -q -o {0}/made{1}",
    "fleet run": "fleet run {0}/fleet --jobs 1 -q --db {0}/run{1}.db",
    "fleet merge": "fleet merge {0}/merged{1}.db {0}/fleet.db",
    "fleet report": "fleet report {0}/fleet.db",
}
# Boots a phone thousands of times: what one of these boots costs is a row of its own.
WITHOUT_EXAMPLE = {"influence"}


@dataclass
class Row:
    """One line of the table; what it measures is told by `key` from one time to the next."""

    key: str
    figure: str
    ratio: Optional[float] = None
    aim: Optional[float] = None  # most that the ratio may be


def microseconds(nanoseconds):
    return f"{nanoseconds / 1e3:.3f} us" if nanoseconds < 1e4 else f"{nanoseconds / 1e3:.0f} us"


def processor_times(program, *arguments):
    """Nanoseconds by name of a Google Benchmark program: the medians of interleaved repetitions."""
    out = subprocess.run([program, "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
                          *arguments], check=True, capture_output=True, text=True).stdout
    runs = {}
    for run in json.loads(out)["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run["run_type"] == "iteration":
            scale = {"ns": 1, "us": 1e3, "ms": 1e6}[run["time_unit"]]
            runs.setdefault(run["run_name"], []).append(run["cpu_time"] * scale)
    return {name: statistics.median(times) for name, times in runs.items()}


def crc_rows(build):
    times = processor_times(f"{build}/bin/Crc16Bench", "--benchmark_repetitions=9", "--benchmark_min_time=0.02")
    for size, name in ((64, "64 B"), (4096, "4 KiB"), (1 << 20, "1 MiB")):
        own, boost = times[f"process/{size}"], times[f"boost/{size}"]
        yield Row(f"CRC of {name}", f"{microseconds(own)}, Boost.CRC {microseconds(boost)}", own / boost, 1)


def start_rows(build):
    times = processor_times(f"{build}/bin/BootBench", "--benchmark_repetitions=9", "--benchmark_min_time=0.3")
    yield Row("start-up, over its floor", f"{microseconds(times['boot'])}, floor {microseconds(times['floor'])}",
              times["boot"] / times["floor"], AIM_START)
    costs = {count: (times[f"further/{count}"] - times["further/0"]) / count for count in FURTHER}
    for count, cost in costs.items():
        yield Row(f"a device of {count} further", microseconds(cost), cost / costs[FURTHER[0]])
    yield Row("dearest device over cheapest", "", max(costs.values()) / min(costs.values()), AIM_FLAT)


def measured(build, arguments):
    """Processor milliseconds and peak MiB of a program and all that it starts."""
    out = subprocess.run([f"{build}/bin/Measured", *arguments], check=True, stdout=subprocess.PIPE, text=True).stdout
    milliseconds, peak, status = out.split()
    if status not in ("0", "1"):
        sys.exit(f"{' '.join(arguments)}: ended with {status}")
    return float(milliseconds), float(peak)


def leaves(build):
    """Every command that does something, as zvcam's completion has them."""
    with open(f"{build}/zvcam/pages/zvcam.bash", encoding="utf-8") as file:
        text = file.read()
    table = dict(re.findall(r"\['([^']*)'\]='([^']*)'", text[text.index("_zvcam_commands=("):text.index("_zvcam_options=(")]))
    return {name for name, below in table.items() if name != "-" and (not below or name == "calibration")}


def command_rows(build):
    zvcam = os.path.abspath(f"{build}/bin/zvcam")
    known = leaves(build)
    examples = {name: line for name, line in COMMANDS.items() if any(line.startswith(leaf) for leaf in known)}
    times = {name: [] for name in examples}
    peaks = {}
    with tempfile.TemporaryDirectory() as folder:
        for line in PREPARATION:
            measured(build, [zvcam, *line.format(folder).split()])
        for repetition in range(REPETITIONS):
            for name in random.sample(list(examples), len(examples)):
                milliseconds, peak = measured(build, [zvcam, *examples[name].format(folder, repetition).split()])
                times[name].append(milliseconds)
                peaks[name] = max(peak, peaks.get(name, 0))
    run = statistics.median(times["run"])
    for name, milliseconds in times.items():
        cost = statistics.median(milliseconds)
        aim = AIM_REPORT if name == "run --json" else None
        yield Row(f"zvcam {name}", f"{cost:.1f} ms, {peaks[name]:.1f} MiB at most",
                  None if name == "run" else cost / run, aim)
    for name in sorted(known - WITHOUT_EXAMPLE - {leaf for leaf in known for line in examples.values() if line.startswith(leaf)}):
        yield Row(f"zvcam {name}", "has no example in benchmarks/table.py")


def pool_rows(build):
    boots = 200
    pool = [f"{build}/bin/PoolBench", f"{build}/lib/libcameraplatforminfozelvan.so", HALCYRION, str(boots)]
    for workers in sorted({1, len(os.sched_getaffinity(0))}):
        rate = float(subprocess.run([*pool, str(workers)], check=True, capture_output=True, text=True).stdout)
        yield Row(f"boots a second, {workers} at a time", f"{rate:.0f}")
    milliseconds, peak = measured(build, [*pool, "1"])
    yield Row("a boot among many", f"{milliseconds / boots:.2f} ms each of {boots}, {peak:.1f} MiB at most in all")


def library_row(name, library, strip):
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run([strip, "-o", stripped.name, library], check=True)
        size = os.path.getsize(stripped.name)
    relocations = subprocess.run(["readelf", "-rW", library], check=True, capture_output=True, text=True).stdout
    sections = subprocess.run(["readelf", "-SW", library], check=True, capture_output=True, text=True).stdout
    count = sum(map(int, re.findall(r"contains (\d+) entr", relocations)))
    # The compiler's own start-up code has one of them.
    initialisers = int(re.search(r"\.init_array\s+INIT_ARRAY\s+\w+\s+\w+\s+(\w+)", sections)[1], 16) // 8 - 1
    return Row(f"library for {name}",
               f"{size} bytes, {count} dynamic relocations, {initialisers} static initialiser"
               f"{'' if initialisers == 1 else 's'}", size / LIBRARY_LIMIT, 1)


def main(build, arm64, results):
    rows = [*crc_rows(build), *start_rows(build), *command_rows(build), *pool_rows(build),
            library_row("x86-64", f"{build}/lib/libcameraplatforminfozelvan.so", "strip"),
            library_row("arm64", arm64, "aarch64-linux-gnu-strip")]
    before = {}
    if os.path.exists(results):
        with open(results, encoding="utf-8") as file:
            before = json.load(file)["ratios"]
    table = [("", "", "ratio", "aim", "last time")]
    for row in rows:
        last = before.get(row.key)
        change = f"{last:.2f} ({(row.ratio / last - 1) * 100:+.0f} %)" if row.ratio and last else ""
        table.append((row.key, row.figure, f"{row.ratio:.2f}" if row.ratio else "",
                      "" if row.aim is None else f"{row.aim:.2f}" + (" MISSED" if row.ratio > row.aim else ""), change))
    widths = [max(map(len, column)) for column in zip(*table)]
    for line in table:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    with open(results, "w", encoding="utf-8") as file:
        json.dump({"ratios": {row.key: row.ratio for row in rows if row.ratio},
                   "figures": {row.key: row.figure for row in rows if row.figure}}, file, indent=2)
    return 1 if any(row.aim is not None and row.ratio > row.aim for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
