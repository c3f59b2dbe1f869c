"""Runs the benchmark programs and gathers what they have measured."""

import collections
import json
import math
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
class Growth:
    """What the texts of a form cost: 100, 1,000 and 10,000 lines."""

    form: str
    costs: dict[int, float]

    LINES = (100, 1000, 10000)

    @property
    def step(self):
        return self.costs[10000] / self.costs[1000]

    @property
    def exponent(self):
        return math.log10(self.costs[10000] / self.costs[100]) / 2

    @property
    def is_text(self):
        """The request is more than the text of a cheque: it holds that text once more."""
        return not self.form.endswith("_request")


def growth_program(programs):
    return [programs / "vantiro_bench_cheque", "--growth"]


def growing_forms(programs):
    told = run([*growth_program(programs), "--benchmark_list_tests"], stdout=subprocess.PIPE, text=True).stdout
    return list(dict.fromkeys(name.split("/")[0] for name in told.splitlines()))


def grow(programs, repetitions):
    """The medians of each form, in milliseconds of the processor. Each text is the first that its process makes: once a
    process has made one and given it back, the next lies scattered over what was freed, and what is timed is how
    malloc keeps its lists. A till makes a cheque of ten thousand lines once."""
    forms = growing_forms(programs)
    times = collections.defaultdict(list)
    for _ in range(repetitions):  # interleaved, so that what else the machine does strikes all alike
        for form in forms:
            for lines in Growth.LINES:
                told = run([*growth_program(programs), f"--benchmark_filter=^{form}/{lines}$",
                            "--benchmark_min_time=1e-9", "--benchmark_format=json"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
                entry = json.loads(told.stdout)["benchmarks"][0]
                times[form, lines].append(entry["cpu_time"])
    return [Growth(form, {lines: statistics.median(times[form, lines]) for lines in Growth.LINES}) for form in forms]


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
