"""Holds the binary interfaces of the contract and of the plug-in against those that were promised.

Three things stand between a till and a plug-in that were built years apart: the layout of the contract's types, the
names that a host has for plug-ins, and the names that the plug-in asks of a host. The layout is taken from a library
that only names every type; a changed one is never compatible. A host may have more names and the plug-in may ask for
fewer, and not the other way round.
"""

import re
import shutil
import subprocess
import tempfile
from pathlib import Path
from types import SimpleNamespace

from checks import abi_text

PROMISED = Path(__file__).resolve().parent.parent / "abi"
PROBE = PROMISED / "contract_probe.cpp"
# Of all that the reference till exports: neither its own classes nor what templates of libraries have left.
OF_HOST = re.compile(r"^((typeinfo|typeinfo name|vtable|VTT) for |(non-)?virtual thunk to )?"
                     r"(?!till::|std::|spdlog::|fmt::|Q[A-Z])[A-Za-z]\w*(<\w+>)?(::|$)")
OF_OTHERS = re.compile(r"@|^QRegExp::|^_|^operator (new|delete)")
DESCRIBED = ("--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-parameter-names",
             "--type-id-style", "hash")
CHANGED = 4  # a bit of abidiff's exit status; those below it mean that nothing was compared


class Failure(Exception):
    """Nothing could be compared."""


def run(*command):
    outcome = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)
    if outcome.returncode != 0:
        raise Failure(f"{command[0]}: {outcome.stderr.strip()[:2000]}")
    return outcome.stdout


def names(library, kind):
    found = set()
    for line in run("nm", "--dynamic", "--demangle", f"--{kind}-only", library).splitlines():
        letter, name = re.match(r"[0-9a-f]*\s+([A-Za-z]) (.*)", line).groups()
        if letter != "w":  # may stay undefined
            found.add(name)
    return found


def host_names(library):
    return {name for name in names(library, "defined") if OF_HOST.match(name)}


def plugin_needs(library):
    return {name for name in names(library, "undefined") if not OF_OTHERS.search(name)}


def forgotten(headers):
    """Classes of the contract that the library of all types does not name."""
    probe = PROBE.read_text(encoding="utf-8")
    declared = {name for header in sorted((headers / "host").rglob("*.h"))
                for name in re.findall(r"^\s*(?:class|struct) VANTIRO_HOST_API (\w+)",
                                       header.read_text(encoding="utf-8"), re.MULTILINE)}
    return sorted(name for name in declared if not re.search(rf"\b{name}[*<]", probe) and name != "default_serder_type")


def contract_description(headers):
    """What the compiler makes of the headers below the folder."""
    with tempfile.TemporaryDirectory() as folder:
        library, exports = Path(folder) / "contract.so", Path(folder) / "exports.map"
        exports.write_text("{ global: _Z4name*; local: *; };\n", encoding="utf-8")
        # Without the last options classes with a table would be described where their first function is, in a host.
        run("g++", "-std=c++17", "-g", "-O0", "-fPIC", "-shared", "-fvisibility=hidden", "-fvisibility-inlines-hidden",
            f"-Wl,--version-script={exports}", f"-I{headers}", *run("pkg-config", "--cflags", "Qt6Core").split(), PROBE,
            "-o", library, "-femit-class-debug-always")
        return abi_text.reduced(run("abidw", *DESCRIBED, "--no-elf-needed", "--exported-interfaces-only", library))


def plugin_description(library):
    """What the library has for those who load it, however it was built."""
    with tempfile.TemporaryDirectory() as folder:
        plain = Path(folder) / library.name
        run("strip", "--strip-debug", "-o", plain, library)
        return run("abidw", *DESCRIBED, plain)


def difference(promised, present):
    """What abidiff says of two descriptions: of all that was promised, and of what has only been added."""
    with tempfile.TemporaryDirectory() as folder:
        before, after = Path(folder) / "promised.abi", Path(folder) / "present.abi"
        before.write_text(promised, encoding="utf-8")
        after.write_text(present, encoding="utf-8")
        told = []
        for options in (["--no-added-syms"], []):
            outcome = subprocess.run(["abidiff", *options, before, after], capture_output=True, text=True, check=False)
            if outcome.returncode & (CHANGED - 1):
                raise Failure(f"abidiff: {outcome.stderr.strip() or outcome.stdout.strip()}")
            told.append(outcome.stdout.strip() if outcome.returncode else "")
        return told[0], "" if told[0] else told[1]


class Present:
    """The interfaces as they are now."""

    def __init__(self, headers, till, plugin):
        self.texts = {"contract.abi": contract_description(headers), "plugin.abi": plugin_description(plugin)}
        self.names = {"host.names": host_names(till), "plugin.needs": plugin_needs(plugin)}
        if len(self.names["plugin.needs"]) < 50 or not self.names["plugin.needs"] <= self.names["host.names"]:
            missing = sorted(self.names["plugin.needs"] - self.names["host.names"])
            raise Failure("the plug-in needs what the reference till does not have: " + ", ".join(missing[:5]))

    def accept(self):
        for name, text in self.texts.items():
            (PROMISED / name).write_text(text, encoding="utf-8")
        for name, found in self.names.items():
            (PROMISED / name).write_text("".join(f"{line}\n" for line in sorted(found)), encoding="utf-8")


class Promised:
    """The interfaces that were promised."""

    def __init__(self):
        self.texts = {name: (PROMISED / name).read_text(encoding="utf-8") for name in ("contract.abi", "plugin.abi")}
        self.names = {name: set((PROMISED / name).read_text(encoding="utf-8").splitlines())
                      for name in ("host.names", "plugin.needs")}


def compared(promised, present):
    """What breaks the promise, and what only goes beyond it; one text each."""
    broken, beyond = [], []
    for name, text in present.texts.items():
        bad, good = difference(promised.texts[name], text)
        broken += [f"{name}:\n{bad}"] if bad else []
        beyond += [f"{name}:\n{good}"] if good else []
    for name, losing, gaining in (("host.names", broken, beyond), ("plugin.needs", beyond, broken)):
        losing += [f"{name}: no longer {line}" for line in sorted(promised.names[name] - present.names[name])]
        gaining += [f"{name}: new {line}" for line in sorted(present.names[name] - promised.names[name])]
    return broken, beyond


# Changes of the contract, and whether old plug-ins survive them.
TRIALS = (
    ("a slot between others", "facilities/config.h", "[[nodiscard]] virtual int getInt",
     "virtual void extra();\n    [[nodiscard]] virtual int getInt", False),
    ("a value of an enumeration", "document/enumerations.h", "sale = 1,", "sale = 3,", False),
    ("the type of a field", "document/position.h", "int number = 0;", "double number = 0;", False),
    ("a field of a hidden part", "framework/dialog.h", "    bool isCanceled;",
     "    QString reason;\n    bool isCanceled;", False),
    ("a function that is not virtual", "facilities/config.h", "    [[nodiscard]] virtual int getInt",
     "    void extra();\n    [[nodiscard]] virtual int getInt", True),
)


def names_changed(kind, change):
    """The interfaces with other names."""
    return lambda promised: SimpleNamespace(
        texts=promised.texts, names={**promised.names, kind: change(promised.names[kind])})


def without_entry(promised):
    """The interfaces when the plug-in has lost what Qt loads it by."""
    lines = promised.texts["plugin.abi"].splitlines()
    text = "\n".join(line for line in lines if "qt_plugin_instance" not in line)
    return SimpleNamespace(texts={**promised.texts, "plugin.abi": text}, names=promised.names)


# Changes of the libraries, and whether earlier tills and plug-ins survive them.
LIBRARY_TRIALS = (
    ("a name less in the host", names_changed("host.names", lambda names: names - {min(names)}), False),
    ("a name more in the host", names_changed("host.names", lambda names: names | {"Extra::extra()"}), True),
    ("a name more that the plug-in asks for",
     names_changed("plugin.needs", lambda names: names | {"Extra::extra()"}), False),
    ("a name less that the plug-in asks for", names_changed("plugin.needs", lambda names: names - {min(names)}), True),
    ("a plug-in without its entry", without_entry, False),
)


def unproven(headers, present):
    """The changes that this check takes for what they are not."""
    promised = present.texts["contract.abi"]
    wrong = []
    for what, change, is_compatible in LIBRARY_TRIALS:
        broken, beyond = compared(present, change(present))
        if bool(broken) == is_compatible or bool(beyond) != is_compatible:
            wrong.append(f"{what} is {'not ' if is_compatible else ''}taken as compatible")
    for what, file, old, new, is_compatible in TRIALS:
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(headers / "host", Path(folder) / "host")
            header = Path(folder) / "host" / file
            text = header.read_text(encoding="utf-8")
            if text.count(old) != 1:
                raise Failure(f"{file} no longer has the place for a trial: {old}")
            header.write_text(text.replace(old, new), encoding="utf-8")
            broken, _ = difference(promised, contract_description(Path(folder)))
            if is_compatible == bool(broken):
                wrong.append(f"{what} is {'not ' if is_compatible else ''}taken as compatible")
    return wrong
