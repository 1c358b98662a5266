"""A case on the drawing board: what is done to a line-up, and what is then to be said about it."""

from dataclasses import dataclass, field

import numpy

from schedules import TONE


@dataclass
class Stage:
    """One thing that is done to the whole sound: an FFmpeg filter chain, effects of SoX, or a Python function of
    (samples, rate, numpy generator, span of the line-up) that gives samples."""

    tool: str
    what: object
    label: str = ""

    def __str__(self):
        text = " ".join(self.what) if self.tool == "sox" else self.label or str(self.what)
        return f"{self.tool}: {text}"


@dataclass
class Due:
    """A fault that must be named: at the inputs that hold these channels, or that are these channels' own, or at
    these inputs, or wherever."""

    id: str
    channels: frozenset = None
    homes: frozenset = None
    inputs: frozenset = None

    def at(self, held, homes):
        if self.channels is not None:
            return [i for i, name in enumerate(held) if name in self.channels]
        if self.homes is not None:
            return [i for i, name in enumerate(homes) if name in self.homes]
        return None if self.inputs is None else sorted(self.inputs)


@dataclass
class Draft:
    random: object  # random.Random
    ident: str
    channels: tuple
    rate: int
    lossy: bool
    families: tuple  # all that are to come
    matrix: numpy.ndarray = None  # matrix[input, channel]
    early: list = field(default_factory=list)  # stages before the matrix, on channels
    stages: list = field(default_factory=list)  # after it, on inputs
    late: list = field(default_factory=list)  # at the very end
    dues: list = field(default_factory=list)
    arguments: list = field(default_factory=list)  # of the check
    untouched: list = None  # channels whose own sound nothing was done to
    unmoved: list = None  # channels that are where they belong, and nowhere else
    either: set = field(default_factory=set)  # faults that may be named or not: the samples do not tell
    cut: float = 1  # where tops are cut off, in parts of their height
    label: int = None  # the sample rate that the recording names
    homes: list = None  # the channel that was at each input before they were moved

    def __post_init__(self):
        self.matrix = numpy.eye(len(self.channels))
        self.untouched, self.unmoved = list(self.channels), list(self.channels)
        self.homes, self.label = list(self.channels), self.rate

    @property
    def alone(self):
        return len(self.families) < 2

    @property
    def tone(self):
        return self.ident == TONE

    @property
    def stereo(self):
        return len(self.channels) == 2

    def number(self, channel):
        return self.channels.index(channel)

    def take(self, pool, count=1, among=None):
        """Channels of a pool, which they leave; None where there are too few."""
        left = [name for name in pool if among is None or name in among]
        if len(left) < count:
            return None
        taken = self.random.sample(left, count)
        for name in taken:
            pool.remove(name)
        return taken

    def due(self, fault, **where):
        """channels=, homes= or inputs= say where."""
        self.dues.append(Due(fault, **{key: frozenset(names) for key, names in where.items() if names is not None}))
        return True

    def add(self, tool, what, label=""):
        self.stages.append(Stage(tool, what, label))

    def mixes(self):
        """The matrix does something."""
        inputs, channels = self.matrix.shape
        return inputs != channels or (self.matrix != numpy.eye(inputs)).any()

    def holds(self):
        """The channel at each input: that which is loudest there."""
        held = []
        for row in numpy.abs(self.matrix):
            held.append(self.channels[int(row.argmax())] if row.max() > 0 else None)
        return held

    def expected(self):
        """{id: inputs in order, or None where they are not said}."""
        held = self.holds()
        return {due.id: due.at(held, self.homes) for due in self.dues}
