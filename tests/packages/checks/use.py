"""Uses the packages as those do who install them, where nothing but what they depend on is there."""

import re
import time
from pathlib import Path

from checks.clean_root import CleanRoot
from checks.tools import Failure, field, told

INSIDE = Path(__file__).resolve().parent.parent / "inside"
TOOLS = ("g++", "cmake", "ninja-build", "pkg-config")


def asked_for(files, installed, *names):
    """What is installed with these packages: those of ours, and those of this machine."""
    ours, others, waiting = [], set(), list(names)
    while waiting:
        name = waiting.pop()
        if name in ours:
            continue
        ours.append(name)
        for alternatives in filter(None, field(files[name], "Depends").split(", ")):
            if (needed := re.match(r"[a-z0-9.+-]+", alternatives)[0]) in files:
                waiting.append(needed)
            elif chosen := installed.chosen(alternatives):
                others.add(chosen)
            else:
                raise Failure(f"{name} depends on {alternatives}, which is not installed on this machine")
    return ours, others


def till_root(folder, files, installed):
    """A root with the till."""
    began = time.monotonic()
    root = CleanRoot(folder, installed)
    ours, others = asked_for(files, installed, "vantiro-till")
    count = root.add(installed.with_dependencies(installed.essential() | others))
    root.install([files[name] for name in ours])
    print(f"a root of {count} packages, {root.mebibytes()} MiB, for {' and '.join(sorted(ours))}: "
          f"{time.monotonic() - began:.1f} s")
    return root


def add_contract(root, files, installed):
    """Installs the contract in it, and what makers of tills build with."""
    began = time.monotonic()
    ours, others = asked_for(files, installed, "vantiro-host-dev")
    count = root.add(installed.with_dependencies(others | set(TOOLS)))
    root.install([files[name] for name in ours])
    print(f"{count} packages more, {root.mebibytes()} MiB in all, for {' and '.join(sorted(ours))} and a compiler: "
          f"{time.monotonic() - began:.1f} s")


def enter(root, script):
    """Runs a script of inside/ in the root."""
    place = root.folder / "opt"
    for file in INSIDE.iterdir():
        (place / file.name).write_bytes(file.read_bytes())
    began = time.monotonic()
    output = root.run("sh", f"/opt/{script}")
    print(f"{script}: {time.monotonic() - began:.1f} s")
    print("\n".join(f"    {line}" for line in output.rstrip().splitlines()))


def remove(root, names):
    """Takes the packages away; what remains of them is a mistake."""
    root.run("dpkg", "--purge", *names)
    tops = (root.folder / top for top in ("usr", "etc", "var/lib"))
    if left := [str(path.relative_to(root.folder)) for top in tops for path in top.rglob("*")
                if "vantiro" in path.name]:
        raise Failure("removed packages leave behind " + ", ".join(left))
    print("removed, and nothing is left behind")
