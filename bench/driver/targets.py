"""What the figures have to be: shares of a peer's figure in the same run, never times of a machine."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Target:
    """Of the cases that the pattern finds, ours beside that peer."""

    case: str  # a pattern over suite/name/size
    peer: str
    most: float


TARGETS = (
    # An accrual is made of an ordinary cheque that has to stay as it is: two trees, and so is its peer.
    Target(r"cheque/(accrual|accrual_request)/\d+", "bare_dom_copied", 1.10),
    Target(r"cheque/(ordinary|return|any|canceled|canceled_emptied)/\d+", "bare_dom", 1.10),
    Target(r"reply/tree/\d+", "bare_dom", 1.15),
    Target(r"exchange/is_card_valid", "libcurl", 2.0),
    Target(r"exchange/get_discounts/100", "qt_network", 1 / 20),
    Target(r"sale/sale/20", "bare", 1.6),
    Target(r"sale/sale_20ms/20", "bare", 1.05),
    Target(r"store/plugin_data/\d+", "bare", 1.25),
    Target(r"load/load", "empty", 2.5),
)

MOST_STEP = 12.0  # of the cheque's text, 10,000 lines beside 1,000; 10 is linear
MOST_EXPONENT = 1.10  # of the cheque's text, from 100 to 10,000 lines; 1 is linear
MOST_GROWTH = 1.02  # of the memory of a till that stays on
MOST_SLOWING = 1.10  # of its time for a cheque


def limit_of(suite, name, size, peer):
    text = "/".join(str(part) for part in (suite, name, size) if part is not None)
    return next((target.most for target in TARGETS
                 if target.peer == peer and re.fullmatch(target.case, text)), None)
