"""Spoils packages on trial: each check must notice what it is there for, and for this reason."""

import contextlib
import io
import re
import shutil
import tempfile
from pathlib import Path

from checks import contents, use
from checks.tools import Failure, told


def without_file(*patterns):
    def change(top):
        for pattern in patterns:
            for path in top.glob(pattern):
                path.unlink()
    return change


def with_text(file, old, new):
    def change(top):
        path = top / file
        path.write_text(re.sub(old, new, path.read_text(encoding="utf-8")), encoding="utf-8")
    return change


def without_dependency(name):
    def less(found):
        return "Depends: " + ", ".join(one for one in found[1].split(", ") if one.split(" ")[0] != name)
    return with_text("DEBIAN/control", r"(?m)^Depends: (.*)$", less)


def sale(root, _files, _installed):
    use.enter(root, "sale")


def story(root, _files, _installed):
    use.enter(root, "story")


def example(root, files, installed):
    use.add_contract(root, files, installed)
    use.enter(root, "example")


# What is spoiled, the package, how, and where that is noticed by which words.
LOOKED_AT = (
    ("a manual page is missing", "vantiro-till", without_file("usr/share/man/man1/vantiro-till.1.gz"),
     lambda files, sources: contents.lint(files), "no-manual-page [usr/bin/vantiro-till]"),
    ("a header is missing", "vantiro-host-dev", without_file("usr/include/vantiro-host/host/framework/text_printer.h"),
     contents.look_for_gaps, "host/framework/text_printer.h"),
    ("a page is missing", "vantiro-host-dev", without_file("usr/share/doc/vantiro-host-dev/stored-state.md"),
     contents.look_for_gaps, "till-makers.md to ../vantiro-host-dev/stored-state.md"),
    ("a path of the sources", "vantiro-host-dev", None,
     lambda files, sources: contents.look_for_paths(files, [sources]), "vantiro-host.pc"),
)
USED = (
    ("a library is not asked for", "vantiro-till", without_dependency("libzint2.11"), sale, "libzint.so"),
    ("the driver of the database is not asked for", "vantiro-till", without_dependency("libqt6sql6-sqlite"), story,
     "Driver"),
    ("the plug-in is not asked for", "vantiro-till", without_dependency("vantiro-plugin"), sale, "vantiro.ini"),
    ("a library of the plug-in is not asked for", "vantiro-plugin", without_dependency("libqt6core5compat6"), sale,
     "libQt6Core5Compat"),
    ("a misspelt key in the sample", "vantiro-plugin",
     with_text("usr/share/doc/vantiro-plugin/examples/vantiro.ini", "#timeout=", "#timeouts="), sale,
     "sets what nobody reads"),
    ("Qt is not asked for by the contract", "vantiro-host-dev", without_dependency("qt6-base-dev"), example, "Qt6"),
    ("no file for pkg-config", "vantiro-host-dev", without_file("usr/share/pkgconfig/vantiro-host.pc"), example,
     "vantiro-host.pc"),
    ("no file for CMake", "vantiro-host-dev", without_file("usr/share/cmake/VantiroHost/VantiroHostConfig.cmake"),
     example, "VantiroHostConfig.cmake"),
)


def spoiled(files, name, change, folder):
    """The packages, one of them changed."""
    top = Path(folder) / "spoiled"
    told("dpkg-deb", "--raw-extract", files[name], top)
    before = state(top)
    change(top)
    if state(top) == before:
        raise Failure(f"{name} no longer has the place for a trial")
    file = Path(folder) / files[name].name
    told("dpkg-deb", "--root-owner-group", "--build", top, file)
    shutil.rmtree(top)
    return {**files, name: file}


def state(top):
    return {path: path.read_bytes() for path in top.rglob("*") if path.is_file() and not path.is_symlink()}


def noticed(check, sign):
    """What is wrong when the check does not fail, or for another reason; else nothing."""
    try:
        with contextlib.redirect_stdout(io.StringIO()):
            check()
    except Failure as failure:
        return "" if sign in str(failure) else f"but for another reason: {failure}"
    return "not at all"


def prove(files, installed, sources):
    wrong = []
    for what, name, change, check, sign in LOOKED_AT:
        change = change or with_text("usr/share/pkgconfig/vantiro-host.pc", r"\Z", f"# {sources}\n")
        with tempfile.TemporaryDirectory() as folder:
            changed = spoiled(files, name, change, folder)
            if told_so := noticed(lambda: check(changed, sources), sign):
                wrong.append(f"{what}: noticed {told_so}")
    for what, name, change, check, sign in USED:
        with tempfile.TemporaryDirectory(prefix="vantiro-root-") as folder:
            changed = spoiled(files, name, change, folder)
            root = Path(folder) / "root"
            if told_so := noticed(lambda: check(use.till_root(root, changed, installed), changed, installed), sign):
                wrong.append(f"{what}: noticed {told_so}")
    if wrong:
        raise Failure("\n".join(wrong))
    print(f"{len(LOOKED_AT) + len(USED)} packages spoiled on trial, each noticed")
