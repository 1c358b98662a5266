"""What GStreamer's converters do to a picture, and what rewrites the tags of a file without a look at its pictures."""

import os

from sound_files import run

# How GStreamer calls what FFmpeg calls so.
FORMATS = {"yuv422p": "Y42B", "yuv420p": "I420", "yuv422p10le": "I422_10LE"}
# range:matrix:transfer:primaries, as numbers: 1 is full and 2 limited range, 3 is BT.709 and 4 BT.601.
MATRICES = {"bt709": 3, "smpte170m": 4}
# In H.264 and MPEG-2, and in ProRes.
NUMBERS = {"bt709": 1, "smpte170m": 6}


def colorimetry(matrix, span=2):
    return f"{span}:{MATRICES[matrix]}:5:1"


def converted(sheet, before, after, *elements):
    """From one colorimetry to another, with elements on 8 bits between where there are some."""
    pixels = "yuv422p" if elements else sheet.random.choice(["yuv422p", "yuv422p10le", "yuv420p"])
    sheet.gstreamer = (pixels, before, after, elements)
    sheet.open += ["bits-truncated", "blacks-crushed"]


def gst_clean(sheet):
    """To full range and the other matrix and back: nothing is due."""
    own = colorimetry(sheet.matrix)
    converted(sheet, own, own, "videoconvert", f"video/x-raw,format=Y42B,colorimetry={colorimetry(sheet.other, 1)}")


def gst_matrix(sheet):
    converted(sheet, colorimetry(sheet.matrix), colorimetry(sheet.other))
    sheet.is_due("matrix-wrong")


def gst_matrix_again(sheet):
    converted(sheet, colorimetry(sheet.other), colorimetry(sheet.matrix))
    sheet.is_due("matrix-wrong")


def gst_saturation(sheet):
    own = colorimetry(sheet.matrix)
    by = sheet.random.choice([0.6, 0.85, 1.07])
    converted(sheet, own, own, f"videobalance saturation={by}")
    sheet.is_due("saturation-wrong", 100 * by, 1.5)


def gst_contrast(sheet):
    own = colorimetry(sheet.matrix)
    by = sheet.random.choice([0.7, 0.85, 0.93])
    converted(sheet, own, own, f"videobalance contrast={by}")
    sheet.is_due("gain-wrong", 100 * by, 1.5)


def gst_turned(sheet):
    own = colorimetry(sheet.matrix)
    way, fault = sheet.random.choice([("horiz", "mirrored"), ("vert", "flipped")])
    converted(sheet, own, own, f"videoflip video-direction={way}")
    sheet.gstreamer = ("yuv420p", *sheet.gstreamer[1:])  # it knows no 4:2:2
    sheet.is_due(fault)
    sheet.open.append("chroma-subsampled")


def gst_boxed(sheet):
    own = colorimetry(sheet.matrix)
    width, height = (side * 3 // 4 // 4 * 4 for side in (sheet.width, sheet.height))
    across, down = (sheet.width - width) // 2, (sheet.height - height) // 2
    converted(sheet, own, own, "videoscale add-borders=false", f"video/x-raw,width={width},height={height},pixel-aspect-ratio=1/1",
              f"videobox left=-{across} right=-{across} top=-{down} bottom=-{down}")
    sheet.is_due("scaled", width, 1)


def through_gstreamer(folder, sheet, number, given):
    """Reads codes from `given`, an ffmpeg command without its output, and gives arguments that read what came of it."""
    pixels, before, after, elements = sheet.gstreamer
    plain = os.path.join(folder, f"{number}.raw")
    done = os.path.join(folder, f"{number}-converted.raw")
    run([*given, "-f", "rawvideo", "-pix_fmt", pixels, plain])
    shape = f"width={sheet.sent[0]} height={sheet.sent[1]} framerate=25/1"
    stages = [f"filesrc location={plain}",
              f"rawvideoparse format={FORMATS[pixels].lower().replace('_', '-')} {shape} colorimetry={before}",
              *elements, "videoconvert",
              f"video/x-raw,format={FORMATS[pixels]},colorimetry={after}", f"filesink location={done}"]
    run(["gst-launch-1.0", "-q", *" ! ".join(stages).split()])
    os.remove(plain)
    return ["-f", "rawvideo", "-pixel_format", pixels, "-video_size", f"{sheet.width}x{sheet.height}", "-framerate",
            "25", "-i", done], done


def bitstream_tags(sheet):
    """A filter rewrites what the stream says, and leaves its pictures alone."""
    matrix = NUMBERS[sheet.other]
    sheet.remux = {
        "prores_ks": f"-bsf:v prores_metadata=colorspace={matrix}:color_primaries={matrix}",
        "libx264": f"-bsf:v h264_metadata=matrix_coefficients={matrix}:colour_primaries={matrix}",
        "mpeg2video": f"-bsf:v mpeg2_metadata=matrix_coefficients={matrix}:colour_primaries={matrix}",
    }[sheet.codec.arguments.split()[1]]
    sheet.is_due("tags-wrong")


def bitstream_range(sheet):
    sheet.remux = "-bsf:v h264_metadata=video_full_range_flag=1"
    sheet.is_due("tags-wrong")


def muxer_tags(sheet):
    """The container alone says something else."""
    sheet.remux = f"-colorspace {sheet.other} -color_primaries {sheet.other}"
    sheet.is_due("tags-wrong")


def remuxed(sheet, path):
    """The same packets in another file of the same name."""
    kept = f"{path}.kept"
    os.rename(path, kept)
    run(["ffmpeg", "-v", "error", "-y", "-i", kept, "-c", "copy", *sheet.remux.split(), path])
    os.remove(kept)


CONVERTERS = {function.__name__.replace("_", "-"): function for function in (
    gst_clean, gst_matrix, gst_matrix_again, gst_saturation, gst_contrast, gst_turned, gst_boxed,
    bitstream_tags, bitstream_range, muxer_tags)}
