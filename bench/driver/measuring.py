"""Runs the benchmark programs and gathers what they have measured."""

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


LONGEST = 10000  # lines of a cheque

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
    elif suite.name == "cheque":
        options.append(f"--benchmark_filter=-/{LONGEST}$")
    figures, context = report_of(suite.name, [programs / f"vantiro_bench_{suite.name}", *options], suite.clock)
    if suite.name == "cheque" and not quick:
        figures.update(longest_texts(programs, repetitions))
    return figures, context


def report_of(suite, command, clock):
    with tempfile.TemporaryDirectory() as folder:
        report = Path(folder) / "report.json"
        told = run([*command, f"--benchmark_out={report}", "--benchmark_out_format=json"], stdout=subprocess.PIPE,
                   stderr=subprocess.STDOUT, text=True)
        try:
            content = json.loads(report.read_text(encoding="utf-8"))
        except (OSError, ValueError) as error:
            raise Failure(f"{suite} has left no report: {told.stdout}") from error
    figures = {}
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    for entry in sorted(content["benchmarks"],
                        key=lambda entry: (entry["family_index"], entry["per_family_instance_index"])):
        if entry["run_type"] != "iteration":
            continue
        if entry.get("error_occurred"):
            raise Failure(f"{suite}, {entry['run_name']}: {entry['error_message']}")
        case = figures.setdefault(case_of(suite, entry["run_name"]), Figures())
        case.times.append(entry[clock] * scale[entry["time_unit"]])
        case.counters = {name: entry[name] for name in ("MiB", "syncs", "posts", "commits", "bytes") if name in entry}
    return figures, content["context"]


def first_program(programs):
    return [programs / "vantiro_bench_cheque", "--first"]


def first_cases(programs):
    """The names under which the program has each case."""
    told = run([*first_program(programs), "--benchmark_list_tests"], stdout=subprocess.PIPE, text=True).stdout
    return {case_of("cheque", name): name for name in told.splitlines()}


def own_forms(programs):
    return list(dict.fromkeys(case.name for case in first_cases(programs) if not case.peer))


def first_texts(programs, case_names, repetitions):
    """The figures of cases of the program, each text made in memory that nobody has used: a long text in the memory of a
    former one lies scattered over what that has left, and what is timed is the heap. A process has such memory for a
    dozen texts."""
    wanted = "|".join(re.escape(name) for name in case_names)
    return report_of("cheque", [*first_program(programs), f"--benchmark_filter=^({wanted})$",
                                f"--benchmark_repetitions={repetitions}"], "real_time")[0]


def longest_texts(programs, repetitions):
    """Ours and the peers, which follow one another. A process for each case: preparing a peer takes longer than all that
    is timed."""
    names = {case: name for case, name in first_cases(programs).items() if case.size == LONGEST}
    order = list(dict.fromkeys(case.name for case in names))
    figures = {}
    for case in sorted(names, key=lambda case: order.index(case.name)):
        figures.update(first_texts(programs, [names[case]], repetitions))
    return figures


@dataclass(frozen=True)
class Growth:
    """What the texts of a form cost: 100, 1,000 and 10,000 lines."""

    form: str
    costs: dict[int, float]

    LINES = (100, 1000, LONGEST)

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


def grow(programs, repetitions, known=None):
    """The medians of each of our forms; the longest texts may be known already. Each text has a process of its own besides:
    the second in a process runs code that the first has brought into the caches, and that is much of a short text and
    nothing of a long one."""
    names = {case: name for case, name in first_cases(programs).items() if not case.peer and case.size in Growth.LINES}
    times = {case: list(known[case].times) if known and case in known and case.size == LONGEST else [] for case in names}
    missing = [case for case in names if not times[case]]
    for _ in range(repetitions):  # interleaved, so that what else the machine does strikes all alike
        for case in missing:
            times[case] += first_texts(programs, [names[case]], 1)[case].times
    return [Growth(form, {case.size: statistics.median(found) for case, found in times.items() if case.name == form})
            for form in dict.fromkeys(case.name for case in names)]


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
