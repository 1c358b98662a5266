"""What is done to a picture, here by FFmpeg, and what is then to be said of it. A family draws its numbers, adds
filters (or arguments of the muxer, or a bit stream filter) and names the faults that are due."""

from dataclasses import dataclass, field


@dataclass
class Sheet:
    """A picture on its way: filters on codes, in their order, and what is due."""

    random: object  # random.Random
    width: int
    height: int
    codec: object  # of picture_chains
    hd: bool  # by the number of its lines when it was sent
    filters: list = field(default_factory=list)
    remux: str = ""  # arguments of a copy of the finished file
    gstreamer: tuple = None  # (format, colorimetry before, after, elements) behind the filters
    tags: tuple = None  # (matrix, range) that the file is to name instead of the right ones
    due: list = field(default_factory=list)
    open: list = field(default_factory=list)  # faults that may be named or not
    measured: dict = field(default_factory=dict)  # {id: (value, tolerance)}
    arguments: list = field(default_factory=list)  # of the check

    def __post_init__(self):
        self.sent = (self.width, self.height)

    @property
    def matrix(self):
        return "bt709" if self.hd else "smpte170m"

    @property
    def other(self):
        return "smpte170m" if self.hd else "bt709"

    def add(self, *filters):
        self.filters += filters

    def eight_bits(self, *filters):
        """By way of 8 bits, which a file of more shows."""
        self.add("format=yuv422p", *filters)
        self.open.append("bits-truncated")

    def is_due(self, fault, measured=None, tolerance=None):
        self.due.append(fault)
        if measured is not None:
            self.measured[fault] = (measured, tolerance)


SCALER = {"bt709": "709", "smpte170m": "170m"}
NAMES = {"bt709": "bt709", "smpte170m": "bt601"}  # as the scaler calls them


def convert(sheet, before, after):
    """One of FFmpeg's scalers goes through 8 bits of R'G'B', which cuts off what lies below black."""
    if sheet.random.random() < 0.5:
        sheet.add("setparams=range=tv", f"zscale=matrixin={SCALER[before]}:matrix={SCALER[after]}:primariesin=709:"
                  "primaries=709:transferin=709:transfer=709:rangein=limited:range=limited")
        return
    sheet.add(f"scale=in_color_matrix={NAMES[before]}:out_color_matrix={NAMES[after]}:"
              "flags=accurate_rnd+full_chroma_int+full_chroma_inp")
    sheet.open += ["blacks-crushed", "bits-truncated"]


def matrix_missing(sheet):
    convert(sheet, sheet.matrix, sheet.other)  # numbers of the other, tags as they were
    sheet.is_due("matrix-wrong")


def matrix_again(sheet):
    convert(sheet, sheet.other, sheet.matrix)
    sheet.is_due("matrix-wrong")


def green_coefficient(sheet):
    """A digit of the green one is wrong, in somebody's table."""
    cb, cr = (0.1873, 0.4681) if sheet.hd else (0.3441, 0.7141)
    green = f"(lum(X,Y)-64)-{cb}*219/224*(cb(X,Y)-512)-{cr}*219/224*(cr(X,Y)-512)"
    sheet.add("format=yuv444p10le", f"geq=lum='lum(X,Y)+0.005*({green})':cb='cb(X,Y)':cr='cr(X,Y)'")
    sheet.is_due("matrix-wrong")


def stretched(sheet):
    sheet.add("scale=in_range=limited:out_range=full", "setparams=range=tv")
    sheet.is_due("range-wrong")


def squeezed(sheet):
    sheet.add("scale=in_range=full:out_range=limited", "setparams=range=tv")
    sheet.is_due("range-wrong")


def squeezed_twice(sheet):
    sheet.add(*(("scale=in_range=full:out_range=limited", "setparams=range=tv") * 2))
    sheet.is_due("range-wrong")


def brightness(sheet):
    """An offset of luma, in per cent of full codes."""
    by = sheet.random.choice([-0.06, 0.05, 0.08, 0.12])
    shift = round(by * 255)
    sheet.eight_bits(f"lutyuv=y=val+{shift}".replace("+-", "-"))
    sheet.is_due("lift-wrong", 100 * shift / 219, 0.7)
    sheet.open.append("blacks-crushed")


def gain(sheet):
    by = sheet.random.choice([0.8, 0.9, 0.95, 1.06])
    sheet.eight_bits(f"lutyuv=y=(val-16)*{by}+16")
    sheet.is_due("gain-wrong", 100 * by, 1)


def contrast(sheet):
    by = sheet.random.choice([0.7, 0.85, 0.93])
    sheet.eight_bits(f"eq=contrast={by}")
    sheet.is_due("gain-wrong")
    sheet.open.append("lift-wrong")  # that filter is off by a code and more


def setup(sheet):
    sheet.eight_bits("lutyuv=y=16+219*(0.075+0.925*(val-16)/219)")
    sheet.is_due("lift-wrong", 7.5, 0.4)


def gamma(sheet):
    by = sheet.random.choice([0.7, 0.8, 1.25, 1.5])
    sheet.eight_bits(f"lutyuv=y=gammaval({by})")
    sheet.is_due("gamma-wrong")
    sheet.open.append("blacks-crushed")


def gamma_rgb(sheet):
    by = sheet.random.choice([0.8, 1.2])
    sheet.open.append("bits-truncated")
    sheet.add("format=gbrp", f"lutrgb=r=gammaval({by}):g=gammaval({by}):b=gammaval({by})",
              f"scale=out_color_matrix={NAMES[sheet.matrix]}:out_range=limited", "format=yuv444p")
    sheet.is_due("gamma-wrong", by, 0.05)
    sheet.open.append("blacks-crushed")


def srgb_once_more(sheet):
    curve = "if(lte(val/255,0.0031308),val*12.92,255*(1.055*pow(val/255,1/2.4)-0.055))"
    sheet.open.append("bits-truncated")
    sheet.add("format=gbrp", ":".join(f"{c}='{curve}'" for c in ("lutrgb=r", "g", "b")),
              f"scale=out_color_matrix={NAMES[sheet.matrix]}:out_range=limited", "format=yuv444p")
    sheet.is_due("gamma-wrong")
    sheet.open.append("blacks-crushed")


def saturation(sheet):
    by = sheet.random.choice([0.5, 0.8, 0.92, 1.07])
    sheet.add(f"hue=s={by}")
    sheet.is_due("saturation-wrong", 100 * by, 1.5)


def hue(sheet):
    by = sheet.random.choice([-30, -8, 5, 12, 60])
    sheet.add(f"hue=h={by}")
    sheet.is_due("hue-wrong", None)


def swapped(sheet):
    sheet.add("shuffleplanes=0:2:1")
    sheet.is_due("chroma-swapped")


def grey(sheet):
    sheet.add("hue=s=0")
    sheet.is_due("chroma-missing")


def crushed(sheet):
    sheet.eight_bits("lutyuv=y=max(val\\,16)")
    sheet.is_due("blacks-crushed")


def clipped(sheet):
    at = sheet.random.choice([190, 200, 215])
    sheet.eight_bits(f"lutyuv=y=min(val\\,{at})")
    sheet.is_due("whites-clipped", at, 3)


def truncated(sheet):
    lost = 2 if sheet.codec.bits > 8 else sheet.random.choice([1, 2])
    sheet.add(f"lutyuv=y=bitand(val\\,{(1 << sheet.codec.bits) - (1 << lost)})")
    sheet.is_due("bits-truncated", sheet.codec.bits - lost, 0.1)


def chroma_late(sheet):
    by = sheet.random.choice([1, 2, 3])  # samples of colour
    sheet.add(f"chromashift=cbh={by}:crh={by}:edge=smear")
    sheet.is_due("chroma-shifted", 2 * by if sheet.codec.halved else by, 1)


def four_one_one(sheet):
    sheet.add("scale=flags=bilinear", "format=yuv411p", "scale=flags=bilinear", "format=yuv422p")
    sheet.is_due("chroma-subsampled")
    sheet.open += ["chroma-shifted", "bits-truncated"]


def mirrored(sheet):
    sheet.add("hflip")
    sheet.is_due("mirrored")


def flipped(sheet):
    sheet.add("vflip")
    sheet.is_due("flipped")


def cropped(sheet):
    left, top = sheet.random.choice([(0, 8), (16, 0), (16, 12), (24, 24)])
    sheet.add(f"crop=iw-{2 * left}:ih-{2 * top}:{left}:{top}")
    sheet.width -= 2 * left
    sheet.height -= 2 * top
    sheet.is_due("cropped", max(left, top), 0.6)


def zoomed(sheet):
    sheet.add(f"scale={sheet.width * 11 // 10 // 4 * 4}:-2:flags=bicubic", f"crop={sheet.width}:{sheet.height}")
    sheet.is_due("cropped")
    sheet.open += ["soft", "chroma-subsampled"]


def letterboxed(sheet):
    inner = sheet.height * sheet.random.choice([3, 4]) // 5 // 4 * 4
    sheet.add(f"scale={sheet.width}:{inner}:flags=bicubic", f"pad={sheet.width}:{sheet.height}:0:(oh-ih)/2")
    sheet.is_due("scaled")


def windowed(sheet):
    share = sheet.random.choice([50, 66, 80, 90])
    width, height = (side * share // 100 // 4 * 4 for side in (sheet.width, sheet.height))
    left, top = sheet.random.choice([(0, 0), (8, 16), (24, 12)])
    sheet.add(f"scale={width}:{height}:flags=bicubic", f"pad={sheet.width}:{sheet.height}:{left}:{top}")
    sheet.is_due("scaled", width, 1)


def shifted(sheet):
    by = sheet.random.choice([4, 8, 16])
    sheet.add(f"crop=iw-{by}:ih:0:0", f"pad={sheet.width}:{sheet.height}:{by}:0")
    sheet.is_due("shifted", by, 0.5)


def noisy(sheet):
    sheet.add(f"noise=c0s={sheet.random.choice([12, 20])}:c0f=t+u")
    sheet.is_due("picture-noise")


def soft(sheet):
    sheet.add(f"gblur=sigma={sheet.random.choice([2, 3])}")
    sheet.is_due("soft")
    sheet.open += ["chroma-subsampled"]


def black_frames(sheet):
    sheet.add("drawbox=t=fill:c=black:enable='between(n,2,3)'")
    sheet.is_due("picture-changes", 2, 0)
    sheet.open.append("bits-truncated")  # that filter has 8


def tags_rewritten(sheet):
    sheet.tags = (sheet.other, "tv")
    sheet.is_due("tags-wrong")


def tags_full(sheet):
    sheet.tags = (sheet.matrix, "pc")
    sheet.is_due("tags-wrong")


FAMILIES = {function.__name__.replace("_", "-"): function for function in (
    matrix_missing, matrix_again, green_coefficient, stretched, squeezed, squeezed_twice, brightness, gain, contrast, setup, gamma,
    gamma_rgb, srgb_once_more, saturation, hue, swapped, grey, crushed, clipped, truncated, chroma_late, four_one_one,
    mirrored, flipped, cropped, zoomed, letterboxed, windowed, shifted, noisy, soft, black_frames, tags_rewritten,
    tags_full)}
