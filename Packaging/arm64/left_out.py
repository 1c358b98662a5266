"""The tests that ./dev arm64 leaves out, or takes a sample of, where what is built runs emulated: the one table of them."""
from typing import NamedTuple


class Row(NamedTuple):
    """Tests whose whole names `names`, a regular expression, fits; why; and of how many of them one runs, 0 if none does.

    What is sampled runs the first of its tests in order of their numbers, and from there every `one_of`-th.
    """

    names: str
    reason: str
    one_of: int = 0


# The first row that fits a test decides.
LEFT_OUT = (
    Row(r"PlaceTrust\.(RefusesWhatBelongsToSomebodyElse|RefusesALinkThatSomebodyElseMade)",
        "the namespace that emulated.sh makes knows one user alone, who can give no file away"),
)
