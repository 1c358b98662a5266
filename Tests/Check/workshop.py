"""Makes the recording of a case: sources first, then what happens to them."""

import os

import numpy

import codec_effects
import schedules
from cases import TONE_LEVEL_DB
from sound_files import read_sound, read_wave, run, write_wave

MOST_CYCLES = {"blits": 2.2, "ebu-5.1": 2.2, "ebu-stereo-1000": 4.1, "ebu-stereo-400": 4.1, schedules.TONE: 4.1}
PUBLISHED_LEVEL = -18.0  # dBFS, EBU R 68
WORDS = ("Testing, testing, one two three. This is the line-up for tonight's programme, from studio four. "
         "Stand by, please; in about ten seconds we go ahead with the news and the weather.")
LAYOUTS = {1: "mono", 2: "stereo", 6: "5.1(side)"}


class Workshop:
    """Makes what is asked for, in a folder; what is used again is kept there."""

    def __init__(self, lineup, folder):
        self.lineup, self.folder = lineup, folder

    def kept(self, name, make):
        path = os.path.join(self.folder, name.replace(" ", "-") + ".npy")
        if not os.path.exists(path):
            unfinished = f"{path}.{os.getpid()}.npy"
            numpy.save(unfinished, make())
            os.replace(unfinished, path)
        return numpy.load(path, mmap_mode="r")

    def scratch(self, name):
        return os.path.join(self.folder, f"{os.getpid()}-{name}")

    def line_up(self, maker, ident, rate):
        """As long as any recording of it begins late and lasts; a steady tone has one channel."""
        seconds = MOST_CYCLES[ident] * schedules.cycle_of(ident)
        if ident == schedules.TONE:
            return self.kept(f"tone-{maker}-{rate}", lambda: self.tone(maker, rate, seconds))
        if maker == "the plug-in":
            return self.kept(f"{ident}-{rate}", lambda: self.rendered(["--ident", ident], rate, seconds))
        return self.kept(f"{ident}-{rate}-published",
                         lambda: schedules.synthesise(ident, rate, PUBLISHED_LEVEL, seconds))

    def rendered(self, arguments, rate, seconds):
        path = self.scratch("rendered.wav")
        run([self.lineup, "render", path, *arguments, "--duration", f"{seconds:.2f}", "--sample-rate", str(rate),
             "--audio-codec", "pcm-f32", "--quiet", "--overwrite", "--no-sync"])
        samples, _ = read_wave(path)
        os.remove(path)
        return samples

    def tone(self, maker, rate, seconds):
        if maker == "the plug-in":
            return self.rendered(["--channels", "mono", "--level", str(TONE_LEVEL_DB[maker])], rate, seconds)
        path = self.scratch("tone.wav")
        if maker == "FFmpeg":
            sine = f"sine=frequency=1000:sample_rate={rate}:duration={seconds}"
            run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", sine, "-c:a", "pcm_f32le", path])
        else:
            sine = ["synth", str(seconds), "sine", "1000", "gain", str(TONE_LEVEL_DB[maker])]
            run(["sox", "-D", "-n", "-r", str(rate), "-e", "floating-point", "-b", "32", path, *sine])
        samples, _ = read_wave(path)
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
            run(["sox", "-R", "-n", "-r", str(rate), "-b", "32", path, "synth", "1.2", *chord, "remix", "-",
                 "repeat", "4", "gain", "-12"])
        data = run(["ffmpeg", "-v", "error", "-i", path, "-ar", str(rate), "-ac", "1", "-f", "f32le", "-"])
        os.remove(path)
        return numpy.frombuffer(data, dtype="<f4").reshape(-1, 1)

    def sent(self, case):
        draft = case.draft
        first = round(case.start * draft.rate)
        line_up = self.line_up(case.maker, draft.ident, draft.rate)[first:first + round(case.seconds * draft.rate)]
        if draft.tone:
            line_up = numpy.repeat(line_up, len(draft.channels), axis=1)
        before, after = (self.around(*kind, draft.rate, len(draft.channels)) for kind in (case.before, case.after))
        span = (len(before), len(before) + len(line_up))
        return Sound(self, numpy.concatenate([before, line_up, after]), draft.rate,
                     numpy.random.default_rng(case.number), span)

    def make(self, case):
        """Makes the recording of a case; its path, and the faults that the codec itself may have made."""
        draft = case.draft
        sound = self.sent(case)
        for stage in draft.early:
            sound.do(stage.tool, stage.what)
        if draft.mixes():
            sound.mix(draft.matrix, case.number % 2 == 0)
        for stage in draft.stages + draft.late:
            sound.do(stage.tool, stage.what)
        path = os.path.join(self.folder, f"case-{case.number}.{case.chain.extension}")
        if not case.chain.lossy:
            sound.encode(case.chain.arguments(len(draft.matrix)), path)
            return path, ()
        sound.settle()
        if case.chain.surround_filter and len(draft.matrix) == 6:
            sound.do("ffmpeg", case.chain.surround_filter)
        sound.encode(case.chain.arguments(len(draft.matrix)), path)
        decoded = read_sound(path, len(draft.matrix))
        return path, codec_effects.open_faults(sound.samples, decoded, draft)


class Sound:
    """A sound that goes from program to program. FFmpeg's filters wait for each other, so that it starts once."""

    def __init__(self, workshop, samples, rate, random, span):
        self.workshop, self.samples, self.rate, self.random = workshop, samples, rate, random
        self.span, self.length = span, len(samples)  # where the line-up was in it at first
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
            self.samples, self.rate = read_wave(after)
            os.remove(before)
            os.remove(after)
        else:
            scale = len(self.samples) / self.length
            self.samples = what(self.samples, self.rate, self.random, [int(scale * at) for at in self.span])

    def settle(self):
        """Lets FFmpeg do what waits."""
        if self.filters:
            path = self.workshop.scratch("filtered.wav")
            self.encode(["-c:a", "pcm_f32le"], path)
            self.samples, self.rate = read_wave(path)
            os.remove(path)

    def mix(self, matrix, by_sox):
        used = [[(i, float(x)) for i, x in enumerate(row) if x != 0] for row in matrix]
        if by_sox:
            self.do("sox", ["remix", *(",".join(f"{i + 1}v{x:.9f}" for i, x in row) or "0" for row in used)])
            return
        rows = ("+".join(f"{x:.9f}*c{i}" for i, x in row) or "0*c0" for row in used)
        pan = "|".join(f"c{i}={row}" for i, row in enumerate(rows)).replace("+-", "-")
        self.filters.append(f"pan={LAYOUTS[len(matrix)]}|{pan}")

    def encode(self, arguments, path):
        source = self.workshop.scratch("source.wav")
        write_wave(source, self.samples, self.rate)
        filters = ["-af", ",".join(self.filters)] if self.filters else []
        # In packets as small as FFmpeg 5 reads: those of 7 are too large for SMPTE 302M in 5.1.
        run(["ffmpeg", "-v", "error", "-y", "-max_size", "4096", "-i", source, *arguments, *filters, "-threads", "1", path])
        os.remove(source)
        self.filters = []
