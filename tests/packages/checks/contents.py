"""Looks into packages: what lintian says, what they have, and what must not stand in them."""

import re
import subprocess
import tempfile
from pathlib import Path

from checks.tools import Failure, field, told

NAMES = ("vantiro-plugin", "vantiro-host-dev", "vantiro-till")


def packages_of(build):
    """The three packages of the build, by name."""
    files = {field(file, "Package"): file for file in sorted((build / "packages").glob("*.deb"))}
    if sorted(files) != sorted(NAMES):
        raise Failure(f"{build / 'packages'} holds {', '.join(files) or 'nothing'}, not {', '.join(NAMES)}")
    return files


def describe(files):
    for file in files.values():
        print(f"{file.name}: {file.stat().st_size / 1024:.0f} KiB, {field(file, 'Installed-Size')} KiB installed\n"
              f"    depends on {field(file, 'Depends')}")


def lint(files):
    """Everything that lintian can say counts; what it says with a reason stands in the packages' overrides."""
    # With its overrides on show lintian counts them like mistakes: what it prints decides here, and its exit status
    # only tells whether it came to its end.
    outcome = subprocess.run(["lintian", "--allow-root", "--display-info", "--pedantic", "--show-overrides",
                              "--fail-on", "none", *map(str, files.values())], capture_output=True, text=True,
                             check=False)
    if outcome.returncode != 0 or outcome.stderr:
        raise Failure(f"lintian did not come to its end\n{outcome.stderr}".strip())
    lines = [line for line in outcome.stdout.splitlines() if line]
    if mistakes := [line for line in lines if not line.startswith(("N: ", "O: "))]:
        raise Failure("\n".join(["lintian is not content", *mistakes]))
    if any(line.startswith("O: ") and not before.startswith("N: ") for before, line in zip(["", *lines], lines)):
        raise Failure("an override does not say its reason")
    print("\n".join(f"lintian: {line}" for line in lines) or "lintian: nothing")


def look_for_paths(files, places):
    """Where the packages were made is nobody's business, and differs from machine to machine."""
    count, found = 0, set()
    with tempfile.TemporaryDirectory() as folder:
        for name, file in files.items():
            top = Path(folder) / name
            told("dpkg-deb", "--raw-extract", file, top)
            for path in filter(lambda path: path.is_file() and not path.is_symlink(), top.rglob("*")):
                count += 1
                content = path.read_bytes()
                if any(str(place).encode() in content for place in places):
                    found.add(f"{name}: {path.relative_to(top)}")
    if found:
        raise Failure("the place of the sources or of the build stands in " + ", ".join(sorted(found)))
    print(f"{count} files, none with a path of the machine that made them")


def look_for_gaps(files, sources):
    """The whole contract is there, and each page leads only to what the packages have."""
    with tempfile.TemporaryDirectory() as folder:
        top = Path(folder)
        for file in files.values():
            told("dpkg-deb", "--extract", file, top)
        include = top / "usr/include/vantiro-host"
        wanted = {str(path.relative_to(sources)) for path in (sources / "host").rglob("*.h")}
        present = {str(path.relative_to(include)) for path in include.rglob("*") if path.is_file()}
        if not wanted or wanted != present:
            raise Failure("headers that are missing or too many: " + ", ".join(sorted(wanted ^ present)))
        pages = sorted((top / "usr/share/doc").rglob("*.md"))
        links = [(page, link) for page in pages
                 for link in re.findall(r"\]\(([^)#]+)", page.read_text(encoding="utf-8")) if "://" not in link]
        if broken := [f"{page.relative_to(top)} to {link}" for page, link in links
                      if not (page.parent / link).exists()]:
            raise Failure("links that lead nowhere: " + ", ".join(broken))
    print(f"{len(present)} headers; {len(pages)} pages with {len(links)} links, none that leads nowhere")
