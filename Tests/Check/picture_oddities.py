"""What a stranger may hand in: the card in containers, codecs and formats that no case of the laboratory has, mostly
undamaged. Each must be called what it is."""

import os
from dataclasses import dataclass

from sound_files import run

HD, FULL_HD, SD, NTSC = (1280, 720), (1920, 1080), (720, 576), (720, 480)
TAGS = "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv"
X264 = f"-c:v libx264 -preset ultrafast -crf 18 {TAGS}"
TO_RGB = "scale=in_color_matrix=bt709:in_range=limited:out_range=full:flags=accurate_rnd+full_chroma_int"
TO_FULL = "scale=in_range=limited:out_range=full"
PALETTE = "split[a][b];[a]palettegen[p];[b][p]paletteuse=dither=none"
BURNT_IN = ("drawbox=x=1100:y=40:w=120:h=60:c=white:t=fill,"
            "drawtext=text='%{pts\\:hms}':fontsize=40:x=500:y=600:fontcolor=white:box=1:boxcolor=black")


@dataclass(frozen=True)
class Oddity:
    told: str
    size: tuple
    filters: str
    arguments: str
    extension: str
    due: tuple = ()


def still(told, pixels, extension, filters=TO_RGB, due=()):
    return Oddity(told, HD, f"{filters},format={pixels}", "-frames:v 1", extension, due)


ODDITIES = (
    Oddity("VP9", HD, "format=yuv420p", f"-c:v libvpx-vp9 -crf 30 -b:v 0 -deadline realtime {TAGS}", "webm"),
    Oddity("AV1", HD, "format=yuv420p", f"-c:v libsvtav1 -preset 10 -crf 35 {TAGS}", "mp4"),
    Oddity("HEVC with the tags of HDR", HD, "format=yuv420p10le",
           "-c:v libx265 -preset ultrafast -x265-params log-level=none -colorspace bt2020nc -color_primaries bt2020 "
           "-color_trc smpte2084", "mp4", ("tags-wrong",)),
    Oddity("HEVC, BT.2020 indeed", HD,
           "zscale=matrixin=709:matrix=2020_ncl:rangein=limited:range=limited:primariesin=709:primaries=709:transferin=709:"
           "transfer=709,format=yuv420p10le,setparams=colorspace=bt2020nc",
           "-c:v libx265 -preset ultrafast -x265-params log-level=none -colorspace bt2020nc", "mp4"),
    Oddity("H.264 4:4:4", HD, "format=yuv444p", X264, "mp4"),
    Oddity("H.264 of RGB", HD, f"{TO_RGB},format=rgb24", "-c:v libx264rgb -preset ultrafast -crf 15", "mkv"),
    Oddity("grey", HD, "format=gray", "-c:v ffv1", "mkv", ("chroma-missing",)),
    Oddity("grey, 10 bits", HD, "format=gray10le", "-c:v libx264 -preset ultrafast -crf 18", "mkv", ("chroma-missing",)),
    Oddity("full range that nobody says", HD, f"{TO_FULL},format=yuv420p,setparams=range=unknown",
           "-c:v libx264 -preset ultrafast -crf 18 -color_range 0", "mkv", ("range-wrong",)),
    Oddity("full range that is said", HD, f"{TO_FULL},format=yuvj420p",
           "-c:v libx264 -preset ultrafast -crf 18 -color_range pc -colorspace bt709", "mp4"),
    Oddity("1440 pixels of 4:3", FULL_HD, "scale=1440:1080:flags=lanczos,setsar=4/3,format=yuv420p",
           f"-c:v mpeg2video -qscale:v 3 {TAGS}", "ts"),
    Oddity("1080 lines of 1088", FULL_HD, "format=yuv420p", X264, "ts"),
    Oddity("smaller and back", HD, "scale=960:540,scale=1280:720,format=yuv422p", f"-c:v ffv1 {TAGS}", "mkv"),
    Oddity("HD at 854x480, said to be BT.709", HD, "scale=854:480:flags=lanczos,format=yuv420p", X264, "mp4"),
    Oddity("interlaced H.264", FULL_HD, "setfield=tff,format=yuv420p", f"{X264} -flags +ilme+ildct -x264-params tff=1", "ts"),
    Oddity("interlaced MPEG-2", SD, "setfield=tff,scale=interl=1,format=yuv420p",
           "-c:v mpeg2video -flags +ilme+ildct -qscale:v 4 -colorspace bt470bg", "mpg"),
    Oddity("without its second field", FULL_HD, "setfield=tff,yadif,format=yuv422p", f"-c:v ffv1 {TAGS}", "mkv"),
    Oddity("DV, 625 lines", SD, "format=yuv420p", "-c:v dvvideo -r 25", "dv"),
    Oddity("DV, 525 lines, 4:1:1", NTSC, "format=yuv411p", "-c:v dvvideo -r 30000/1001", "dv"),
    Oddity("Theora", HD, "format=yuv420p", "-c:v libtheora -q:v 8", "ogv"),
    Oddity("Windows Media", HD, "format=yuv420p", "-c:v wmv2 -b:v 8M", "wmv"),
    Oddity("MPEG-1 in CIF", SD, "scale=352:288,format=yuv420p", "-c:v mpeg1video -qscale:v 3", "mpg"),
    Oddity("HuffYUV", HD, "format=yuv422p", "-c:v huffyuv", "avi"),
    Oddity("Ut Video of RGB", HD, f"{TO_RGB},format=gbrp", "-c:v utvideo", "avi"),
    Oddity("VC-2", HD, "format=yuv422p10le", f"-c:v vc2 -b:v 80M {TAGS}", "mkv"),
    Oddity("CineForm", HD, "format=yuv422p10le", f"-c:v cfhd {TAGS}", "mov"),
    Oddity("ProRes 4444 with alpha", HD, "format=yuva444p10le", f"-c:v prores_ks -profile:v 4 -alpha_bits 16 {TAGS}", "mov"),
    Oddity("YUV4MPEG", HD, "format=yuv420p", "-f yuv4mpegpipe", "y4m"),
    Oddity("NV12", HD, "format=nv12", f"-c:v rawvideo {TAGS}", "nut"),
    Oddity("Snow", HD, "format=yuv420p", "-c:v snow -strict -2 -qscale:v 3", "nut"),
    Oddity("Sorenson H.263", HD, "format=yuv420p", "-c:v flv -qscale:v 3", "flv"),
    Oddity("4:1:0", SD, "scale=flags=bilinear,format=yuv410p", "-c:v ffv1", "mkv"),
    Oddity("frames of different lengths", HD, "format=yuv420p,setpts='N*N/25/TB'", f"-vsync vfr {X264}", "mp4"),
    Oddity("BT.709 in SMPTE 240M's name", HD, "format=yuv422p", "-c:v ffv1 -colorspace smpte240m", "mkv", ("tags-wrong",)),
    Oddity("BT.709 in BT.470's name", HD, "format=yuv422p", "-c:v ffv1 -colorspace bt470bg", "mkv", ("tags-wrong",)),
    Oddity("no tags at all", HD,
           "format=yuv422p,setparams=colorspace=unknown:color_primaries=unknown:color_trc=unknown:range=unknown", "-c:v ffv1",
           "avi"),
    Oddity("the SD card in an HD frame", SD, "scale=960:720,pad=1280:720:160:0,format=yuv422p",
           "-c:v ffv1 -colorspace smpte170m", "mkv", ("scaled",)),
    Oddity("a logo and a time code burnt in", HD, f"{BURNT_IN},format=yuv420p", X264, "mp4"),
    Oddity("HD made UHD", FULL_HD, "scale=3840:2160:flags=lanczos,format=yuv422p10le", f"-c:v ffv1 {TAGS}", "mkv"),
    Oddity("colour beside the upper left pixel", HD, "scale=out_v_chr_pos=0:out_h_chr_pos=0,format=yuv420p",
           f"{X264} -chroma_sample_location topleft", "mp4"),
    Oddity("colour between pixels, which nobody says", HD, "scale=out_v_chr_pos=128:out_h_chr_pos=128,format=yuv420p", X264,
           "mp4"),
    Oddity("GIF", HD, f"{TO_RGB},{PALETTE}", "-r 25", "gif"),
    still("BMP", "bgr24", "bmp"), still("TGA with alpha", "bgra", "tga"), still("JPEG 2000", "rgb24", "jp2"),
    still("DPX, 10 bits", "gbrp10be", "dpx"), still("PNG, 16 bits", "rgb48be", "png"),
    still("PNG of a palette", "pal8", "png", f"{TO_RGB},{PALETTE}"),
    still("grey PNG", "gray", "png", TO_FULL, ("chroma-missing",)),
    still("JPEG, BT.601 as its rules have it", "yuvj420p", "jpg",
          "scale=in_color_matrix=bt709:out_color_matrix=bt601:in_range=limited:out_range=full"),
)


def write(index, card, folder):
    """The file of an oddity; `card` is a recording of its size."""
    oddity = ODDITIES[index]
    path = os.path.join(folder, f"oddity-{index}.{oddity.extension}")
    run(["ffmpeg", "-v", "error", "-y", "-i", card, "-an", "-filter_complex", oddity.filters, *oddity.arguments.split(), path])
    return path


def table(seen):
    """`seen`: what was named of each, and the verdict."""
    rows = [f"| {oddity.told} | {', '.join(oddity.due) or 'nothing'} | {', '.join(got) or ('nothing' if found else 'no card')} |"
            for oddity, (got, found) in zip(ODDITIES, seen, strict=True)]
    return "\n".join(["| recording | due | named |", "| --- | --- | --- |", *rows])


def holds(seen):
    return all(found and set(got) == set(oddity.due) for oddity, (got, found) in zip(ODDITIES, seen, strict=True))
