"""Many tills in front of three services, one of which is killed and brought back."""

import contextlib
import sqlite3
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

from driver.measuring import Failure

SERVICES = 3
PATIENCE = 120  # seconds for a till to end


@dataclass(frozen=True)
class Plan:
    tills: int
    seconds: float  # that each till sells for
    pace: float  # seconds from the beginning of a sale to that of the next at the same till


@dataclass
class Day:
    """What all tills together have done. Times in milliseconds."""

    plan: Plan
    sales: list[float]
    struck: int  # tills whose first service died
    stayed: int  # of them, those that sold nothing through another service
    strayed: int  # of them, those that sold nothing through the first one when it was back
    waiting: int  # messages that no service has been told
    lost: int  # cheques of the tills that the services do not have
    different: int  # cheques with another sum
    phantoms: int  # cheques of the services that no till has closed

    @property
    def rate(self):
        return len(self.sales) / self.plan.seconds

    def percentile(self, share):
        return statistics.quantiles(self.sales, n=100, method="inclusive")[share - 1]

    @property
    def faults(self):
        return self.waiting + self.lost + self.different + self.phantoms


@dataclass
class Till:
    process: subprocess.Popen
    first: int  # the service that it prefers
    cheques: dict[str, int] | None = None  # sums in kopecks


class Service:
    def __init__(self, program, rules, state, name):
        self.command = [str(program), "--rules", str(rules), "--state", str(state), "--name", name, "--quiet"]
        self.address = None
        self.process = None
        self.start(0)

    def start(self, port):
        self.process = subprocess.Popen([*self.command, "--port", str(port)], stdout=subprocess.PIPE, text=True)
        words = self.process.stdout.readline().split()
        try:
            self.address = words[words.index("service") + 1]
        except (ValueError, IndexError) as error:
            raise Failure(f"a sandbox service does not start: {' '.join(words)}") from error

    def kill(self):
        self.process.kill()
        self.process.wait()

    def bring_back(self):
        self.start(int(self.address.rstrip("/").rsplit(":", 1)[1]))


def card(number):
    return f"9{number:09}"


def write_rules(file, rules, tills):
    """Those of the benchmark, and a card for each till."""
    cards = "".join(f'  - number: "{card(number)}"\n    balance: 1000.00\n' for number in range(tills))
    file.write_text(rules.read_text(encoding="utf-8") + "cards:\n" + cards, encoding="utf-8")


def rows(state, query):
    with contextlib.closing(sqlite3.connect(state, timeout=30)) as database:
        return database.execute(query).fetchall()


def last_request(state):
    return rows(state, "SELECT coalesce(max(id), 0) FROM request")[0][0]


def told(tills):
    """The sales of the tills and the messages that still wait; each till gets its cheques."""
    sales, waiting = [], 0
    for till in tills:
        output, errors = till.process.communicate(timeout=PATIENCE)
        if till.process.returncode != 0:
            raise Failure(f"a till has failed: {errors}")
        till.cheques = {}
        for line in output.splitlines():
            words = line.split()
            if words[0] == "waiting":
                waiting += int(words[1])
                continue
            sales.append(float(words[1]))
            till.cheques[words[2]] = int(words[3])
    return sales, waiting


def account(plan, tills, state, back):
    """Compares what the tills have told with what the services have written down. `back` is the last request before the
    first service was back."""
    sales, waiting = told(tills)
    if len(sales) < 2:
        raise Failure("the tills have sold nothing")
    booked = {uid: (amount, server, request) for uid, amount, server, request in rows(
        state, "SELECT c.uid, c.amount, r.server, r.id FROM cheque c JOIN request r ON r.id = c.request")}
    sold = {uid: amount for till in tills for uid, amount in till.cheques.items()}
    struck = [[booked[uid] for uid in till.cheques if uid in booked] for till in tills if till.first == 0]
    return Day(plan, sales, len(struck),
               sum(1 for cheques in struck if all(server == "s0" for _, server, _ in cheques)),
               sum(1 for cheques in struck if not any(server == "s0" and request > back for _, server, request in cheques)),
               waiting, len(sold.keys() - booked.keys()),
               sum(1 for uid, amount in sold.items() if uid in booked and booked[uid][0] != amount),
               len(booked.keys() - sold.keys()))


def day(build, rules, plan):
    """The first service, which a third of the tills prefer, dies after a third of the time and is back after another
    third. The tills open one after the other, so that their sales are spread."""
    with tempfile.TemporaryDirectory() as folder:
        state, all_rules = Path(folder) / "state.db", Path(folder) / "rules.yaml"
        write_rules(all_rules, rules, plan.tills)
        services, tills = [], []
        try:
            for i in range(SERVICES):
                services.append(Service(build / "sandbox/vantiro-sandbox", all_rules, state, f"s{i}"))
            addresses = [service.address for service in services]
            opening = time.monotonic()
            for i in range(plan.tills):
                time.sleep(max(0.0, opening + i * plan.pace / plan.tills - time.monotonic()))
                first = i % SERVICES
                tills.append(Till(subprocess.Popen(
                    [str(build / "bench/vantiro_bench_till"), card(i), str(plan.seconds), str(plan.pace),
                     *addresses[first:], *addresses[:first]],
                    stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True), first))
            # Measured from the opening of the first till: the last one has its last third a little later.
            time.sleep(max(0.0, opening + plan.pace + plan.seconds / 3 - time.monotonic()))
            services[0].kill()
            time.sleep(plan.seconds / 3)
            back = last_request(state)
            services[0].bring_back()
            return account(plan, tills, state, back)
        finally:
            for till in tills:
                if till.process.poll() is None:
                    till.process.kill()
                    till.process.wait()
            for service in services:
                service.kill()
