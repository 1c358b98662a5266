"""Codecs that a picture goes through, all of them FFmpeg's."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Codec:
    name: str
    extension: str
    arguments: str
    pixels: str  # the format
    lossy: bool = False
    fine: bool = True  # keeps the ramp's codes and edges
    tagged: bool = True  # carries matrix and range as they are given
    size: tuple = None  # the one that it is for

    @property
    def bits(self):
        return 10 if self.pixels.endswith("10le") else 8

    @property
    def halved(self):
        return "444" not in self.pixels


FFV1_10 = Codec("FFV1 10", "mkv", "-c:v ffv1", "yuv422p10le")
FFV1_8 = Codec("FFV1 8", "mkv", "-c:v ffv1", "yuv422p")
FFV1_420 = Codec("FFV1 4:2:0", "mkv", "-c:v ffv1", "yuv420p")
FFV1_444 = Codec("FFV1 4:4:4", "mkv", "-c:v ffv1", "yuv444p10le")
V210 = Codec("v210", "mov", "-c:v v210", "yuv422p10le")
UYVY = Codec("uncompressed", "mov", "-c:v rawvideo -tag:v 2vuy", "uyvy422")
LOSSLESS = (FFV1_10, FFV1_8, FFV1_420, FFV1_444, V210, UYVY)
RGB = (
    Codec("PNG", "png", "-c:v png -frames:v 1", "rgb24", tagged=False),
    Codec("TIFF", "tif", "-c:v tiff -frames:v 1", "rgb24", tagged=False),
)
PRORES = Codec("ProRes", "mov", "-c:v prores_ks -profile:v 3", "yuv422p10le", True)
H264_10 = Codec("H.264 crf 10", "mp4", "-c:v libx264 -preset ultrafast -crf 10", "yuv420p", True)
H264_23 = Codec("H.264 crf 23", "mp4", "-c:v libx264 -preset veryfast -crf 23", "yuv420p", True, False)
MPEG2 = Codec("MPEG-2", "ts", "-c:v mpeg2video -b:v 8M", "yuv420p", True, False)
LOSSY = (
    PRORES,
    Codec("DNxHR", "mov", "-c:v dnxhd -profile:v dnxhr_hq", "yuv422p", True),
    H264_10, H264_23,
    Codec("H.264 crf 35", "ts", "-c:v libx264 -preset veryfast -crf 35", "yuv420p", True, False),
    Codec("H.264 crf 40", "mkv", "-c:v libx264 -preset veryfast -crf 40", "yuv420p", True, False),
    MPEG2,
    Codec("MPEG-2 4:2:2", "mxf", "-c:v mpeg2video -intra_vlc 1 -qscale:v 3", "yuv422p", True, False),
    Codec("Motion JPEG", "mov", "-c:v mjpeg -qscale:v 4", "yuvj422p", True, False, False),
    Codec("coarse Motion JPEG", "avi", "-c:v mjpeg -qscale:v 12", "yuvj420p", True, False, False),
)

# What a family asks of its codec, by its name: of those that a case would take, and of others.
COARSE = (PRORES, H264_10, H264_23, MPEG2)
FOR_LOSSLESS = {
    "tags-rewritten": (FFV1_10, FFV1_8, FFV1_420, FFV1_444), "four-one-one": (FFV1_10, FFV1_8, V210),
    "green-coefficient": (FFV1_10, FFV1_444, V210), "truncated": (FFV1_10, V210),
    "chroma-late": (FFV1_10, FFV1_8, FFV1_420, V210), "stretched": LOSSLESS[:3], "squeezed": LOSSLESS[:3],
    "squeezed-twice": LOSSLESS[:3], "tags-full": LOSSLESS[:3],
    "bitstream-tags": COARSE, "bitstream-range": (H264_10, H264_23), "muxer-tags": (V210, UYVY),
}
FOR_LOSSY = {"stretched": COARSE, "squeezed": COARSE}
