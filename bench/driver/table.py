"""The one table: a line for each figure of ours beside one of a peer's."""

from dataclasses import asdict, dataclass

from driver import targets

WARM_UP = 5000  # cheques after which a till that stays on has all the memory that it needs


@dataclass
class Row:
    suite: str
    what: str
    ours: float
    unit: str
    peer: str = ""
    peers: float | None = None
    most: float | None = None  # of the ratio
    spread: float | None = None
    is_time: bool = True  # a quick run judges none of them
    by_itself: bool = False  # the peer's figure is shown beside it and not judged against

    @property
    def ratio(self):
        return self.ours / self.peers if self.peers else None

    def verdict(self, quick):
        if self.most is None or (quick and self.is_time):
            return ""
        return "met" if (self.ours if self.by_itself else self.ratio) <= self.most else "MISSED"


def rows_of(figures):
    """Ours, once for each peer."""
    rows = []
    for case, own in figures.items():
        if case.peer:
            continue
        what = case.name if case.size is None else f"{case.name}/{case.size}"
        peers = [other for other in figures if (other.suite, other.name, other.size) == (case.suite, case.name, case.size)
                 and other.peer]
        for other in peers or [None]:
            row = Row(case.suite, what, own.median, "ms", spread=own.spread)
            if other:
                row.peer, row.peers = other.peer, figures[other].median
                row.most = targets.limit_of(case.suite, case.name, case.size, other.peer)
            rows.append(row)
            if other and "syncs" in own.counters:
                limit = 1.0 if row.most else None
                rows.append(Row(case.suite, what + " fsyncs", own.counters["syncs"], "", other.peer,
                                figures[other].counters["syncs"], limit, is_time=False))
    return rows


def growth_rows(growths):
    """How the cost of a text grows with its lines."""
    rows = []
    for growth in growths:
        if growth.is_text:
            rows.append(Row("cheque", growth.form + " 10000:1000", growth.step, "", most=targets.MOST_STEP, by_itself=True))
        rows.append(Row("cheque", growth.form + " exponent", growth.exponent, "", most=targets.MOST_EXPONENT,
                        by_itself=True))
    return rows


def memory_rows(figures):
    """What memory the longest texts take."""
    rows = []
    for case in [case for case in figures if case.suite == "cheque" and case.size == 10000 and not case.peer]:
        peers = [other for other in figures if (other.suite, other.name, other.size) == ("cheque", case.name, 10000)
                 and other.peer.startswith("bare_dom")]
        rows.append(Row("cheque", case.name + "/10000 peak", figures[case].counters["MiB"], "MiB", peers[-1].peer,
                        figures[peers[-1]].counters["MiB"]))
    return rows


def life_rows(samples):
    warm = [sample for sample in samples if sample.cheques > WARM_UP]
    if len(warm) < 4:
        last = samples[-1]
        return [Row("life", f"{last.cheques} cheques", last.mebibytes, "MiB", is_time=False),
                Row("life", "each cheque", last.milliseconds, "ms")]
    first = next(sample for sample in samples if sample.cheques >= WARM_UP)
    most = max(sample.mebibytes for sample in warm)
    quarter = max(1, len(warm) // 4)

    def mean(part):
        return sum(sample.milliseconds for sample in part) / len(part)

    return [Row("life", f"memory to {warm[-1].cheques} cheques", most, "MiB", f"at {first.cheques}", first.mebibytes,
                targets.MOST_GROWTH, is_time=False),
            Row("life", "each cheque, last quarter", mean(warm[-quarter:]), "ms", "first quarter", mean(warm[:quarter]),
                targets.MOST_SLOWING)]


def library_rows(ours, empty):
    return [Row("load", "libvantiro.so " + unit, ours[unit], unit if unit == "KiB" else "", "empty", empty[unit],
                is_time=False) for unit in ours]


def tills_rows(day):
    """Nobody may be left behind and the books must be equal; how fast the tills are on one machine is for the reader."""
    def must_be_none(what, count, whole):
        return Row("tills", what, count, f"of {whole}", most=0.0, is_time=False, by_itself=True)

    return [Row("tills", f"{day.plan.tills} tills, sales per second", day.rate, ""),
            Row("tills", "wait in a sale, median", day.percentile(50), "ms"),
            Row("tills", "wait in a sale, 99th percentile", day.percentile(99), "ms"),
            Row("tills", "wait in a sale, worst", max(day.sales), "ms"),
            must_be_none("tills that found no other service", day.stayed, day.struck),
            must_be_none("tills that did not come back", day.strayed, day.struck),
            must_be_none("cheques on which books differ", day.faults, len(day.sales))]


def number(value):
    return f"{value:.0f}" if value >= 1000 or value == 0 else f"{value:.3g}" if value >= 1 else f"{value:.3f}"


def text_of(rows, quick):
    cells = [("suite", "what", "ours", "", "spread", "peer", "peer's", "ratio", "at most", "")]
    for row in rows:
        cells.append((row.suite, row.what, number(row.ours), row.unit,
                      f"{row.spread:.0%}" if row.spread is not None else "", row.peer,
                      number(row.peers) if row.peers is not None else "",
                      f"{row.ratio:.2f}" if row.ratio is not None else "",
                      f"{row.most:.2f}" if row.most is not None else "", row.verdict(quick)))
    widths = [max(len(line[i]) for line in cells) for i in range(len(cells[0]))]
    right = {2, 4, 6, 7, 8}
    return "\n".join("  ".join(cell.rjust(widths[i]) if i in right else cell.ljust(widths[i])
                               for i, cell in enumerate(line)).rstrip() for line in cells)


def plain(row, quick):
    return {**asdict(row), "ratio": row.ratio, "verdict": row.verdict(quick)}
