"""Pictures that were damaged in known ways, and what `lineup check` says of them. Case N is always the same."""

import json
import os
import random
import shutil
import subprocess
from dataclasses import dataclass

import picture_figures
import picture_histories
import picture_oddities
import picture_others
import picture_page
from picture_chains import FOR_LOSSLESS, FOR_LOSSY, LOSSLESS, LOSSY, RGB
from picture_converters import CONVERTERS, remuxed, through_gstreamer
from picture_damages import FAMILIES, Sheet
from sound_files import run

ALL_FAMILIES = FAMILIES | CONVERTERS
FRAMES = 6
SIZES = ((640, 360), (1280, 720), (720, 576), (720, 480))
LARGE = ((1920, 1080), (3840, 2160))  # they take their time: one case in so many, and of these one in five the larger
LARGE_EVERY = 23
ROUND = 20
CODES_OFF = 1.0  # patch means of undamaged pictures
# What a lossy codec leaves as it was.
ROBUST = ("matrix-missing", "matrix-again", "stretched", "squeezed", "brightness", "gain", "setup", "saturation", "hue",
          "swapped", "grey", "mirrored", "flipped", "cropped", "letterboxed", "windowed", "shifted", "black-frames")
COLOURS = ("matrix-missing", "matrix-again", "stretched", "brightness", "gain", "setup", "saturation", "swapped")
PLACES = ("mirrored", "flipped", "cropped", "letterboxed", "windowed", "shifted")


@dataclass
class Picture:
    number: int
    families: tuple
    sheet: Sheet
    bars: str = ""  # another generator's, in place of the clip's card: "ffmpeg" or "gstreamer"

    @property
    def name(self):
        whose = f"{self.bars}'s bars" if self.bars else "undamaged"
        return f"{', '.join(self.families) or whose}; {self.sheet.codec.name} {self.sheet.width}x{self.sheet.height}"


def codec_of(generator, families, codecs):
    codec = generator.choice(codecs)
    for name in families:
        some = (FOR_LOSSLESS if codecs is LOSSLESS else FOR_LOSSY).get(name)
        codec = generator.choice(some) if some else codec
        if "matrix" in name and "Motion" in codec.name:
            codec = LOSSY[0]
    return codec


def size_of(generator, number, families, codec):
    if number % LARGE_EVERY == LARGE_EVERY // 2:
        return LARGE[number // LARGE_EVERY % 5 == 1]
    # Those encoders cannot say BT.601, and the ramp is of the HD card.
    if codec.extension == "mxf" or codec.name == "DNxHR" or "truncated" in families:
        return (1280, 720)
    return generator.choice(SIZES)


def draw(number):
    generator = random.Random(number)
    place = number % ROUND
    names = list(ALL_FAMILIES)
    if place < 6:
        families, codecs = (), (LOSSLESS, LOSSY, LOSSY, LOSSY, RGB, LOSSLESS)[place]
    elif place < 15:
        families, codecs = (names[(number // ROUND * 9 + place - 6) % len(names)],), LOSSLESS
    elif place < 18:
        families, codecs = (generator.choice(ROBUST),), LOSSY
    else:
        families, codecs = (generator.choice(COLOURS), generator.choice(PLACES)), LOSSLESS
    codec = codec_of(generator, families, codecs)
    size = size_of(generator, number, families, codec)
    sheet = Sheet(generator, *size, codec, size[1] >= 720)
    for name in families:
        ALL_FAMILIES[name](sheet)
    bars = generator.choice(("ffmpeg", "gstreamer")) if place == 5 and card_of(size) == "hd" else ""
    return Picture(number, families, sheet, bars)


def source(lineup, folder, size, bars):
    path = os.path.join(folder, f"{bars or 'card'}-{size[0]}x{size[1]}.mkv")
    if os.path.exists(path):
        return path
    unfinished = f"{path}.{os.getpid()}.mkv"
    ffv1 = ["-frames:v", str(FRAMES), "-pix_fmt", "yuv422p10le", "-c:v", "ffv1", unfinished]
    if bars == "ffmpeg":
        run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"smptehdbars=size={size[0]}x{size[1]}:rate=25", *ffv1])
    elif bars == "gstreamer":
        raw = f"{unfinished}.raw"
        run(["gst-launch-1.0", "-q", "videotestsrc", "pattern=smpte-rp-219", f"num-buffers={FRAMES}", "!",
             f"video/x-raw,format=I422_10LE,width={size[0]},height={size[1]}", "!", "filesink", f"location={raw}"])
        run(["ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pixel_format", "yuv422p10le", "-video_size",
             f"{size[0]}x{size[1]}", "-framerate", "25", "-i", raw, *ffv1])
        os.remove(raw)
    else:
        run([lineup, "render", unfinished, "--size", f"{size[0]}x{size[1]}", "--card", card_of(size), "--frames",
             str(FRAMES), "--video-codec", "ffv1", "--quiet", "--no-sync", "--overwrite"])
    os.replace(unfinished, path)
    return path


def card_of(size):
    return "sd" if size[1] in (480, 576) else "hd"


def make(picture, lineup, folder):
    """The file of a case."""
    sheet, codec = picture.sheet, picture.sheet.codec
    # Other generators' bars hold BT.709, of whatever size they are.
    matrix = "bt709" if picture.bars else sheet.matrix
    own = {"bt709": "bt709", "smpte170m": "bt601"}[matrix]
    given = ["ffmpeg", "-v", "error", "-y", "-i", source(lineup, folder, sheet.sent, picture.bars), "-an"]
    filters = [f"setparams=range=tv:colorspace={matrix}", *sheet.filters]
    done = ""
    if sheet.gstreamer:
        read, done = through_gstreamer(folder, sheet, picture.number, given)
        given = ["ffmpeg", "-v", "error", "-y", *read]
        filters = [f"setparams=range=tv:colorspace={matrix}"]
    if codec in RGB:
        filters.append(f"scale=in_color_matrix={own}:in_range=limited:out_range=full:flags=accurate_rnd+full_chroma_int")
    elif codec.pixels.startswith("yuvj"):
        filters.append("scale=in_range=limited:out_range=full")
    filters.append(f"format={codec.pixels}")
    tagged, span = sheet.tags or (matrix, "pc" if codec.pixels.startswith("yuvj") else "tv")
    if codec not in RGB:
        filters.append(f"setparams=range={span}:colorspace={tagged}:color_primaries={tagged}:color_trc=bt709")
    path = os.path.join(folder, f"picture-{picture.number}.{codec.extension}")
    tags = [] if codec in RGB else ["-colorspace", tagged, "-color_range", span, "-color_primaries", tagged]
    run([*given, "-vf", ",".join(filters), *codec.arguments.split(), *tags, path])
    if done:
        os.remove(done)
    if sheet.remux:
        remuxed(sheet, path)
    return path


def arguments_of(picture):
    return ["--card", card_of(picture.sheet.sent), "--expect", "none", *picture.sheet.arguments]


@dataclass
class Result:
    picture: Picture
    verdict: str
    got: dict
    texts: list
    off: float  # the farthest patch of an undamaged picture, codes
    wrong_numbers: list

    @property
    def right(self):
        sheet = self.picture.sheet
        due = set(sheet.due)
        return (set(self.got) - set(sheet.open) == due - set(sheet.open) and not self.wrong_numbers
                and self.verdict == ("faults" if self.got else "right"))


def judge(picture, report):
    got = {fault["id"]: fault["measured"] for fault in report["faults"]}
    wrong = [f"{name} {got[name]}, not {value}" for name, (value, tolerance) in picture.sheet.measured.items()
             if name in got and (got[name] is None or abs(got[name] - value) > tolerance)]
    patches = (report["picture"] or {}).get("patches", [])
    solid = [patch for patch in patches if not patch["name"].startswith(("-I", "+Q", "below"))]
    off = max((abs(a - b) for patch in solid for a, b in zip(patch["expected"], patch["measured"])), default=0)
    texts = [f"{fault['id']}: {fault['text']}" for fault in report["faults"] + report["notes"]]
    return Result(picture, report["verdict"], got, texts, off, wrong)


def check_pictures(lineup, paths, arguments):
    done = subprocess.run([lineup, "check", "--json", *arguments, *paths], capture_output=True, check=False)
    if done.returncode not in (0, 1, 3):
        raise RuntimeError(f"lineup check: exit status {done.returncode}: {done.stderr.decode()}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def judge_pictures(work):
    lineup, folder, numbers = work
    results = []
    for number in numbers:
        picture = draw(number)
        path = make(picture, lineup, folder)
        results.append(judge(picture, check_pictures(lineup, [path], arguments_of(picture))[0]))
        os.remove(path)
    return results


def judge_other(work):
    """What is found in a picture that is no card: the card and the ids of faults, or nothing."""
    lineup, folder, index, other = work
    is_film = other.frames > 1
    path = other.source if is_film else os.path.join(folder, f"other-{index}.mkv")
    if not is_film:
        picture_others.write(other, path)
    report = check_pictures(lineup, [path], ["--expect", "none"])[0]
    if not is_film:
        os.remove(path)
    return other, (report["picture"] or {}).get("card"), [fault["id"] for fault in report["faults"]]


def judge_history(work):
    lineup, folder, index = work
    sheet = picture_histories.sheet_of(index)
    picture = Picture(picture_histories.FIRST + index, (picture_histories.HISTORIES[index].told,), sheet)
    path = make(picture, lineup, folder)
    result = judge(picture, check_pictures(lineup, [path], arguments_of(picture))[0])
    os.remove(path)
    return result


def judge_oddity(work):
    """The ids of what is named, and whether a card was found."""
    lineup, folder, index = work
    path = picture_oddities.write(index, source(lineup, folder, picture_oddities.ODDITIES[index].size, ""), folder)
    report = check_pictures(lineup, [path], ["--expect", "none"])[0]
    os.remove(path)
    return [fault["id"] for fault in report["faults"]], bool((report["picture"] or {}).get("card"))


def run_oddities(lineup, folder, pool):
    return list(pool.imap(judge_oddity, [(lineup, folder, i) for i in range(len(picture_oddities.ODDITIES))]))


def run_cases(lineup, folder, pool, numbers):
    chunks = [(lineup, folder, numbers[i:i + 2]) for i in range(0, len(numbers), 2)]
    return [result for some in pool.imap(judge_pictures, chunks) for result in some]


def run_histories(lineup, folder, pool):
    return list(pool.imap(judge_history, [(lineup, folder, i) for i in range(len(picture_histories.HISTORIES))]))


def run_others(options, folder, pool):
    """Pictures that are no card, each with the card and the faults that were found."""
    others = picture_others.generated()
    if options.photographs:
        others += picture_others.of_folder(options.photographs)
    if options.packages:
        others += picture_others.of_packages(folder, pool)
    works = [(options.lineup, folder, i, other) for i, other in enumerate(others[:options.others])]
    return list(pool.imap(judge_other, works))


def run_rest(options, folder, pool):
    """What belongs to the pictures beside the cases, as the page has it."""
    lineup = options.lineup
    return picture_page.Rest(
        run_histories(lineup, folder, pool), run_others(options, folder, pool),
        run_oddities(lineup, folder, pool) if options.oddities else [],
        picture_figures.all_figures(lineup, folder, check_pictures, pool, lambda size: source(lineup, folder, size, ""))
        if options.oddities else [])


def tell_wrong(result):
    if not result.right:
        print(f"case {result.picture.number} ({result.picture.name}): due {result.picture.sheet.due}, "
              f"{result.verdict} {result.got} {result.wrong_numbers}")


def show(options, folder, pool):
    results = run_cases(options.lineup, folder, pool, range(options.first, options.first + options.cases))
    for result in results:
        tell_wrong(result)
    right, undamaged, wrong, off = picture_page.score(results)
    print(f"pictures {len(results)}, right {right}, undamaged {undamaged}, undamaged wrong {wrong}, "
          f"patches off by {off:.2f} codes at most")
    rest = run_rest(options, folder, pool)
    for result in rest.histories:
        tell_wrong(result)
    for entry in rest.found:
        print(f"found in what is no card: {entry}")
    print(f"histories {len(rest.histories)}, right {sum(result.right for result in rest.histories)}; no cards "
          f"{len(rest.others)}, taken for one {len(rest.found)}")
    print("\n".join(picture_page.rest_sections("", rest).values()))
    if options.page:
        more = "".join(f" --{name}" for name in ("oddities", "packages") if getattr(options, name))
        command = f"./dev laboratory pictures --cases {options.cases} --first {options.first}{more}"
        with open(options.page, encoding="utf-8") as file:
            page = file.read()
        with open(options.page, "w", encoding="utf-8") as file:
            file.write(picture_page.put_into(page, picture_page.section(command, results, rest)) if results
                       else picture_page.put_rest_into(page, command, rest))
    return right >= options.at_least * len(results) and not wrong and rest.holds


def show_one(options, folder):
    picture = draw(options.case)
    path = make(picture, options.lineup, folder)
    print(picture.name, picture.sheet.filters)
    result = judge(picture, check_pictures(options.lineup, [path], arguments_of(picture))[0])
    print(f"due {picture.sheet.due}, open {picture.sheet.open}; {result.verdict} {result.got} {result.wrong_numbers}\n"
          + "\n".join(result.texts))
    if options.keep:
        shutil.move(path, options.keep)
    return result.right
