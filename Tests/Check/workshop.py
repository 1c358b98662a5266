"""Makes the recording of a case: sources first, then what happens to them."""

import os

import numpy

import schedules
from sound_files import read_sound, run, write_wave

CYCLES = {"blits": 3, "ebu-5.1": 3, "ebu-stereo-1000": 5, "ebu-stereo-400": 5}
PUBLISHED_LEVEL = -18.0  # dBFS, EBU R 68
WORDS = ("Testing, testing, one two three. This is the line-up for tonight's programme, from studio four. "
         "Stand by, please; in about ten seconds we go ahead with the news and the weather.")


class Workshop:
    """Makes what is asked for, in a folder; what is used again is kept there."""

    def __init__(self, lineup, folder):
        self.lineup, self.folder = lineup, folder

    def kept(self, name, make):
        path = os.path.join(self.folder, name + ".npy")
        if not os.path.exists(path):
            unfinished = f"{path}.{os.getpid()}.npy"
            numpy.save(unfinished, make())
            os.replace(unfinished, path)
        return numpy.load(path, mmap_mode="r")

    def scratch(self, name):
        return os.path.join(self.folder, f"{os.getpid()}-{name}")

    def line_up(self, maker, ident, rate):
        if maker == "the plug-in":
            return self.kept(f"{ident}-{rate}", lambda: self.rendered(ident, rate))
        return self.kept(f"{ident}-{rate}-published",
                         lambda: schedules.synthesise(ident, rate, PUBLISHED_LEVEL, CYCLES[ident]))

    def rendered(self, ident, rate):
        path = self.scratch("rendered.wav")
        run([self.lineup, "render", path, "--ident", ident, "--cycles", str(CYCLES[ident]), "--sample-rate", str(rate),
             "--audio-codec", "pcm-f32", "--quiet", "--overwrite", "--no-sync"])
        samples, _ = read_sound(path)
        os.remove(path)
        return samples

    def around(self, kind, seconds, rate, channels):
        count = int(seconds * rate)
        if kind in ("nothing", "silence"):
            return numpy.zeros((count, channels), dtype="f4")
        one = self.kept(f"{kind}-{rate}", lambda: self.programme(kind, rate))[:count]
        return numpy.repeat(one, channels, axis=1)

    def programme(self, kind, rate):
        path = self.scratch("programme.wav")
        if kind == "speech":
            run(["espeak-ng", "-w", path, WORDS])
        elif kind == "noise":
            run(["sox", "-R", "-n", "-r", str(rate), "-b", "32", path, "synth", "5", "pinknoise", "gain", "-20"])
        else:
            chord = ["pluck", "C3", "pluck", "E4", "pluck", "G4", "pluck", "C5"]
            run(["sox", "-R", "-n", "-r", str(rate), "-b", "32", path, "synth", "1.2", *chord, "remix", "-", "repeat", "4",
                 "gain", "-12"])
        samples = numpy.frombuffer(run(["ffmpeg", "-v", "error", "-i", path, "-ar", str(rate), "-ac", "1", "-f", "f32le",
                                        "-"]), dtype="<f4").reshape(-1, 1)
        os.remove(path)
        return samples

    def make(self, case):
        """Makes the recording of a case and returns its path."""
        draft = case.draft
        line_up = self.line_up(case.maker, draft.ident, draft.rate)
        first = round(case.start * draft.rate)
        parts = [self.around(*case.before, draft.rate, len(draft.channels)),
                 line_up[first:first + round(case.seconds * draft.rate)],
                 self.around(*case.after, draft.rate, len(draft.channels))]
        sound = Sound(self, numpy.concatenate(parts), draft.rate, numpy.random.default_rng(case.number))
        for stage in draft.early:
            sound.do(stage.tool, stage.what)
        sound.mix(draft.matrix, draft.random.random() < 0.5)
        for stage in draft.stages + draft.late:
            sound.do(stage.tool, stage.what)
        if case.chain.surround_filter and len(draft.matrix) == 6:
            sound.do("ffmpeg", case.chain.surround_filter)
        path = os.path.join(self.folder, f"case-{case.number}.{case.chain.extension}")
        sound.encode(case.chain.arguments(len(draft.matrix)), path)
        return path


class Sound:
    """A sound that goes from program to program. FFmpeg's filters wait for each other, so that it starts once."""

    def __init__(self, workshop, samples, rate, random):
        self.workshop, self.samples, self.rate, self.random = workshop, samples, rate, random
        self.filters = []

    def do(self, tool, what):
        if tool == "ffmpeg":
            self.filters.append(what)
            return
        self.settle()
        if tool == "sox":
            before, after = self.workshop.scratch("in.wav"), self.workshop.scratch("out.wav")
            write_wave(before, self.samples, self.rate)
            run(["sox", "-D", before, "-e", "floating-point", "-b", "32", after, *what])
            self.samples, self.rate = read_sound(after)
            os.remove(before)
            os.remove(after)
        else:
            self.samples = what(self.samples, self.rate, self.random)

    def settle(self):
        """Lets FFmpeg do what waits."""
        if self.filters:
            path = self.workshop.scratch("filtered.wav")
            self.encode(["-c:a", "pcm_f32le"], path)
            self.samples, self.rate = read_sound(path)
            os.remove(path)

    def mix(self, matrix, by_sox):
        inputs, channels = matrix.shape
        if inputs == channels and (matrix == numpy.eye(inputs)).all():
            return
        used = [[(i, float(x)) for i, x in enumerate(row) if x != 0] for row in matrix]
        if by_sox:
            self.do("sox", ["remix", *(",".join(f"{i + 1}v{x:.9f}" for i, x in row) or "0" for row in used)])
        else:
            layout = {2: "stereo", 6: "5.1(side)"}[inputs]
            rows = ("+".join(f"{x:.9f}*c{i}" for i, x in row) or "0*c0" for row in used)
            self.filters.append(f"pan={layout}|" + "|".join(f"c{i}={row}" for i, row in enumerate(rows)).replace("+-", "-"))

    def encode(self, arguments, path):
        source = self.workshop.scratch("source.wav")
        write_wave(source, self.samples, self.rate)
        filters = ["-af", ",".join(self.filters)] if self.filters else []
        run(["ffmpeg", "-v", "error", "-y", "-i", source, *arguments, *filters, "-threads", "1", path])
        os.remove(source)
        self.filters = []

