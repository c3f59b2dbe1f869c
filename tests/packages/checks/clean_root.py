"""A root of its own in which only chosen packages of this machine are installed, for a program to be run in.

It is made of the files that the packages of this machine have, so that it needs neither a mirror nor minutes, and a
package installed into it finds exactly what it depends on. Needs root, or a kernel that lets people have user
namespaces.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

from checks.tools import Failure

STATUS = Path("/var/lib/dpkg/status")
LISTS = Path("/var/lib/dpkg/info")
# What no program needs: half of the files.
LEFT_OUT = ("/usr/share/doc/", "/usr/share/man/", "/usr/share/locale/", "/usr/share/info/", "/usr/share/lintian/")
FOLDERS = ("dev", "proc", "etc", "run", "root", "opt", "tmp", "var/lib/dpkg/info", "var/lib/dpkg/updates",
           "var/lib/dpkg/triggers", "var/log")

# The loopback interface of a new network is down; SIOCSIFFLAGS with IFF_UP.
LOOPBACK_UP = 'import fcntl, socket, struct; fcntl.ioctl(socket.socket(), 0x8914, struct.pack("16sh22x", b"lo", 1))'
# A root is where a file system is mounted: else nobody inside could ask how full its disk is.
INSIDE = """
set -e
root=$0
mount --bind "$root" "$root"
mount -t proc proc "$root/proc"
for node in null zero urandom tty; do
    : >"$root/dev/$node"
    mount --bind "/dev/$node" "$root/dev/$node"
done
"$PYTHON" -c "$LOOPBACK_UP"
exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
"""


class Installed:
    """The packages of this machine."""

    def __init__(self):
        self.stanzas, self.providers = {}, {}
        for stanza in STATUS.read_text(encoding="utf-8").split("\n\n"):
            fields = dict(re.findall(r"^([\w-]+): (.*)$", stanza, re.MULTILINE))
            if fields.get("Status") != "install ok installed":
                continue
            name = fields["Package"]
            self.stanzas[name] = stanza, fields
            for provided in re.findall(r"([a-z0-9.+-]+)(?: \([^)]*\))?", fields.get("Provides", "")):
                self.providers.setdefault(provided, name)

    def essential(self):
        return {name for name, (_, fields) in self.stanzas.items() if fields.get("Essential") == "yes"}

    def chosen(self, alternatives):
        """Of "a (>= 1) | b" the first that is here: versions are left to dpkg, which looks at them anyway."""
        for alternative in alternatives.split("|"):
            name = re.match(r"\s*([a-z0-9.+-]+)", alternative)[1]
            name = name if name in self.stanzas else self.providers.get(name)
            if name:
                return name
        return None

    def with_dependencies(self, wanted):
        found, waiting = set(), list(wanted)
        while waiting:
            name = waiting.pop()
            if name in found:
                continue
            if name not in self.stanzas:
                raise Failure(f"{name} is not installed on this machine")
            found.add(name)
            fields = self.stanzas[name][1]
            for key in ("Pre-Depends", "Depends"):
                for alternatives in filter(None, fields.get(key, "").split(", ")):
                    if needed := self.chosen(alternatives):
                        waiting.append(needed)
        return found

    def files(self, name):
        architecture = self.stanzas[name][1].get("Architecture")
        lists = [LISTS / f"{name}.list", LISTS / f"{name}:{architecture}.list"]
        return next(file for file in lists if file.exists())


class CleanRoot:
    """The root in an empty folder, which the caller removes."""

    def __init__(self, folder, installed):
        self.folder, self.installed, self.packages = folder, installed, set()
        for name in FOLDERS:
            (folder / name).mkdir(parents=True)
        (folder / "tmp").chmod(0o1777)
        for name in ("bin", "lib", "lib64", "sbin"):
            (folder / "usr" / name).mkdir(parents=True)
            (folder / name).symlink_to(f"usr/{name}")
        (folder / "etc/passwd").write_text("root:x:0:0:root:/root:/bin/sh\n", encoding="utf-8")
        (folder / "etc/group").write_text("root:x:0:\n", encoding="utf-8")
        (folder / "etc/hosts").write_text("127.0.0.1 localhost\n", encoding="utf-8")

    def add(self, packages):
        """Installs packages of this machine, as they are here."""
        new = packages - self.packages
        files = []
        for name in sorted(new):
            listed = self.installed.files(name)
            (self.folder / "var/lib/dpkg/info" / listed.name).write_bytes(listed.read_bytes())
            for path in listed.read_text(encoding="utf-8").splitlines():
                # The folders above are links on this machine too, and tar must not unpack over those of the root.
                real = os.path.join(os.path.realpath(os.path.dirname(path)), os.path.basename(path))
                if not path.startswith(LEFT_OUT) and os.path.lexists(real) and (
                        os.path.islink(real) or not os.path.isdir(real)) and not os.path.ismount(real):
                    files.append(real.lstrip("/"))
        pack = subprocess.Popen(["tar", "-C", "/", "--no-recursion", "-c", "--null", "-T", "-"], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE)
        unpack = subprocess.Popen(["tar", "-C", self.folder, "--no-same-owner", "-x"], stdin=pack.stdout)
        pack.stdin.write("\0".join(files).encode())
        pack.stdin.close()
        if unpack.wait() or pack.wait():
            raise Failure("the files of this machine's packages could not be copied")
        with (self.folder / "var/lib/dpkg/status").open("a", encoding="utf-8") as status:
            for name in sorted(new):
                status.write(self.installed.stanzas[name][0].strip("\n") + "\n\n")
        self.packages |= new
        return len(new)

    def run(self, *command, timeout=300):
        """Runs a command in the root, with processes and a network of its own. Standard output and error, joined, are
        the result."""
        # Who is root needs no user namespace, in which a masked /proc could not be mounted.
        rights = [] if os.geteuid() == 0 else ["--map-root-user"]
        outcome = subprocess.run(
            ["unshare", *rights, "--mount", "--net", "--pid", "--fork", "--kill-child", "sh", "-c", INSIDE, self.folder,
             *command],
            env={**os.environ, "PYTHON": sys.executable, "LOOPBACK_UP": LOOPBACK_UP}, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=timeout, check=False)
        text = outcome.stdout.decode("utf-8", "replace")
        if outcome.returncode != 0:
            raise Failure(f"{' '.join(map(str, command))}: status {outcome.returncode}\n{text[-4000:]}")
        return text

    def install(self, files):
        """Installs packages that this machine does not have; dpkg refuses when one depends on what is not here."""
        place = self.folder / "var/cache"
        place.mkdir(exist_ok=True)
        for file in files:
            (place / file.name).write_bytes(file.read_bytes())
        return self.run("dpkg", "--install", *(f"/var/cache/{file.name}" for file in files))

    def mebibytes(self):
        return int(subprocess.run(["du", "--summarize", "--block-size=1M", self.folder], capture_output=True, text=True,
                                  check=True).stdout.split()[0])
