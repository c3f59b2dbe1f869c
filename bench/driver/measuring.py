"""Runs the benchmark programs and gathers what they have measured."""

import json
import re
import statistics
import subprocess
import tempfile
from dataclasses import dataclass, field
from pathlib import Path


class Failure(Exception):
    """Nothing could be measured."""


@dataclass(frozen=True)
class Suite:
    """One program. `seconds` is what each benchmark runs for at least, `instant` what is left of it for --quick."""

    name: str
    clock: str  # cpu_time where only the processor works, else real_time
    seconds: float
    instant: str = ""


SUITES = (
    Suite("cheque", "cpu_time", 0.02, "/(1|20|100)$"),
    Suite("reply", "cpu_time", 0.05, "/(1|20|1000)$"),
    Suite("exchange", "real_time", 0.1),
    Suite("sale", "real_time", 0.1, "/(1|20)/"),
    Suite("store", "real_time", 0.1),
    Suite("load", "real_time", 0.2),
)


@dataclass(frozen=True)
class Case:
    """What was timed: `peer` is empty for our own."""

    suite: str
    name: str
    size: int | None
    peer: str


@dataclass
class Figures:
    """The times in milliseconds, one for each repetition, and what the benchmark has counted beside them."""

    times: list[float] = field(default_factory=list)
    counters: dict[str, float] = field(default_factory=dict)

    @property
    def median(self):
        return statistics.median(self.times)

    @property
    def spread(self):
        """Half of the repetitions lie within this share of the median."""
        if len(self.times) < 4:
            return None
        lower, _, upper = statistics.quantiles(self.times, n=4)
        return (upper - lower) / self.median


def run(command, **options):
    try:
        return subprocess.run(command, check=True, **options)
    except (OSError, subprocess.CalledProcessError) as error:
        raise Failure(error) from error


def case_of(suite, run_name):
    """`ordinary:bare_dom/100` and `get_discounts/20:libcurl/real_time`: a name, its peer and its size."""
    name = re.sub(r"/(real_time|manual_time|iterations:\d+)", "", run_name)
    found = re.fullmatch(r"([^:/]+)(?:/(\d+))?(?::([^/]+))?(?:/(\d+))?", name)
    if not found:
        raise Failure(f"{suite} tells of {run_name}, which is no name of a case")
    size = found[2] or found[4]
    return Case(suite, found[1], int(size) if size else None, found[3] or "")


def measure(suite, programs, repetitions, quick):
    """The figures of each case of the suite, and the context that its program tells."""
    options = [f"--benchmark_min_time={0.001 if quick else suite.seconds}",
               f"--benchmark_repetitions={1 if quick else repetitions}"]
    if not quick:
        options.append("--benchmark_enable_random_interleaving=true")  # what else the machine does strikes all alike
    if quick and suite.instant:
        options.append(f"--benchmark_filter={suite.instant}")
    with tempfile.TemporaryDirectory() as folder:
        report = Path(folder) / "report.json"
        told = run([programs / f"vantiro_bench_{suite.name}", f"--benchmark_out={report}", "--benchmark_out_format=json",
                    *options], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        try:
            content = json.loads(report.read_text(encoding="utf-8"))
        except (OSError, ValueError) as error:
            raise Failure(f"{suite.name} has left no report: {told.stdout}") from error
    figures = {}
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    for entry in sorted(content["benchmarks"],
                        key=lambda entry: (entry["family_index"], entry["per_family_instance_index"])):
        if entry["run_type"] != "iteration":
            continue
        if entry.get("error_occurred"):
            raise Failure(f"{suite.name}, {entry['run_name']}: {entry['error_message']}")
        case = figures.setdefault(case_of(suite.name, entry["run_name"]), Figures())
        case.times.append(entry[suite.clock] * scale[entry["time_unit"]])
        case.counters = {name: entry[name] for name in ("MiB", "syncs", "posts", "commits", "bytes") if name in entry}
    return figures, content["context"]


@dataclass(frozen=True)
class Sample:
    """A till that stays on, after so many cheques."""

    cheques: int
    mebibytes: float
    milliseconds: float  # of one cheque since the sample before


def live(programs, cheques, step):
    told = run([programs / "vantiro_bench_life", str(cheques), str(step)], stdout=subprocess.PIPE, text=True)
    samples = []
    for line in told.stdout.splitlines():
        count, mebibytes, milliseconds = line.split()
        samples.append(Sample(int(count), float(mebibytes), float(milliseconds)))
    if not samples or samples[-1].cheques != cheques:
        raise Failure("the till that stays on has ended too early")
    return samples


def library(file):
    """The size of a library in KiB, and its relocations."""
    relocations = run(["readelf", "--relocs", "--wide", file], stdout=subprocess.PIPE, text=True).stdout
    return {"KiB": Path(file).stat().st_size / 1024, "relocations": len(re.findall(r"^[0-9a-f]{16} ", relocations, re.M))}
