"""What the checks of packages share."""

import subprocess


class Failure(Exception):
    """Something is wrong with the packages, or they cannot be examined."""


def told(*command):
    """What the command prints."""
    outcome = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)
    if outcome.returncode != 0:
        raise Failure(f"{' '.join(map(str, command))}: status {outcome.returncode}\n{outcome.stderr}".strip())
    return outcome.stdout


def field(file, name):
    """A field of the package's control file; empty when it has none."""
    return told("dpkg-deb", "--field", file, name).strip()
