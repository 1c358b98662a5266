"""What is run against what, as data. A command is a shell line; {lineup}, {out} and the like are filled in."""

from dataclasses import dataclass

PICTURE = "smptehdbars=size=1920x1080:rate=25"
TONE = "sine=frequency=1000:sample_rate=48000"


@dataclass(frozen=True)
class Rival:
    """Another program doing the same job. `scaled`: it may run for fewer seconds of media, and the time
    beyond its start is multiplied. `waits`: it ends when the file is on the disk, and then ours does too."""

    name: str
    command: str
    goal: str = ""
    scaled: bool = False
    waits: bool = False


@dataclass(frozen=True)
class Contest:
    """Our command against its rivals. `seconds` of media; `quick_seconds` in a quick run. `given`: the command that
    makes the file {given}, which all of them read."""

    name: str
    command: str
    rivals: tuple
    seconds: float
    quick_seconds: float
    out: str = "out.mov"
    given: str = ""


def encode(settings, out):
    """ffmpeg with its own bars and sine."""
    return (
        f"ffmpeg -nostdin -v error -y -f lavfi -i {PICTURE}:duration={{seconds}} "
        f"-f lavfi -i {TONE}:duration={{seconds}} -map 0 -map 1 -ac 2 {settings} {{folder}}/{out}"
    )


def movie(name, codec, extension, settings, goal, quick_seconds=60, audio="-c:a pcm_s24le", more=()):
    out = f"out.{extension}"
    rivals = ()
    if settings:
        rivals += (Rival("ffmpeg", encode(f"-c:v {settings} {audio}", f"theirs.{extension}"), goal, scaled=True),)
    return Contest(
        name,
        f"{{lineup}} render {{folder}}/{out} --video-codec {codec} --duration {{seconds}} -y -q {{sync}}",
        rivals + tuple(more),
        60,
        quick_seconds,
        out,
    )


DD = "dd if=/dev/zero of={folder}/theirs bs=1M count={bytes} iflag=count_bytes status=none"


DD_ON_DISK = DD + " conv=fsync"


def dd(goal=""):
    return Rival("dd", DD, goal)


def dd_on_disk():
    return Rival("dd conv=fsync", DD_ON_DISK, waits=True)


COPY_TRICK = (
    f"ffmpeg -nostdin -v error -y -f lavfi -i {PICTURE}:duration=0.04 -c:v prores_ks -profile:v hq "
    "-pix_fmt yuv422p10le {folder}/one.mov && "
    "ffmpeg -nostdin -v error -y -stream_loop {frames_less_one} -i {folder}/one.mov "
    f"-f lavfi -i {TONE}:duration={{seconds}} -map 0:v -map 1:a -ac 2 -c:v copy -c:a pcm_s24le {{folder}}/theirs.mov"
)

MPEG2 = (
    "mpeg2video -pix_fmt yuv422p -profile:v 0 -g 1 -b:v 50000000 -maxrate 50000000 -bufsize 17825792 -qscale:v 1 "
    "-qmin 1 -qmax 28 -dc 10 -intra_vlc 1 -non_linear_quant 1 -threads 2"
)
FFV1 = "ffv1 -pix_fmt yuv422p10le -level 3 -g 1 -coder range_tab -context 1 -slices 4 -slicecrc 1"
MJPEG = "mjpeg -pix_fmt yuvj422p -qmin 1 -qscale:v 1"

MOVIES = (
    movie("ProRes 422 HQ", "prores-hq", "mov", "prores_ks -profile:v hq -pix_fmt yuv422p10le", ">= 200",
          more=(Rival("copy trick", COPY_TRICK, ">= 1.5"), dd(), dd_on_disk())),
    movie("ProRes 422", "prores", "mov", "prores -pix_fmt yuv422p10le", ">= 100", more=(dd(),)),
    movie("Motion JPEG", "mjpeg", "mov", MJPEG, ">= 100", more=(dd(),)),
    movie("PNG", "png", "mov", "png -pix_fmt rgb24", ">= 100", more=(dd(),)),
    movie("FFV1", "ffv1", "mkv", FFV1, ">= 60", audio="-c:a flac -sample_fmt s32", more=(dd(),)),
    movie("MPEG-2 intra", "mpeg2-422", "mxf", MPEG2, ">= 60", more=(dd(),)),
    movie("DNxHR HQX", "dnxhr-hqx", "mov", "dnxhd -profile:v dnxhr_hqx -pix_fmt yuv422p10le", ">= 25", 20,
          more=(dd(),)),
    movie("v210", "v210", "mov", "", "", 6, more=(dd(">= 0.667"),)),
    movie("raw 4:2:2, 8 bits", "uyvy422", "mov", "", "", 6, more=(dd(">= 0.667"),)),
)

GSTREAMER = (
    "gst-launch-1.0 -q audiotestsrc wave=sine freq=1000 volume=0.25 samplesperbuffer=4800 num-buffers={tenths} "
    "! audio/x-raw,format=S24LE,rate=48000,channels=2 ! wavenc ! filesink location={folder}/theirs.wav"
)
SOX = "sox -n -r 48000 -b 24 -c 2 {folder}/theirs.wav synth {seconds} sine 1000 gain -12"
FFMPEG_SINE = (
    f"ffmpeg -nostdin -v error -y -f lavfi -i {TONE}:duration={{seconds}} -ac 2 -c:a pcm_s24le {{folder}}/theirs.wav"
)

SOUNDS = (
    Contest("WAV, stereo tone, 24 bits", "{lineup} render {folder}/out.wav --duration {seconds} -y -q {sync}",
            (Rival("sox synth", SOX, ">= 20"), Rival("ffmpeg sine", FFMPEG_SINE, ">= 5"),
             Rival("GStreamer", GSTREAMER, ">= 8"), dd(">= 0.625"), dd_on_disk()), 3600, 600, "out.wav"),
    Contest("WAV, BLITS, 24 bits", "{lineup} render {folder}/out.wav --ident blits --duration {seconds} -y -q {sync}",
            (dd(">= 0.667"),), 3600, 600, "out.wav"),
)

RECORDING = "{lineup} render {given} --ident blits --duration {seconds} -y -q --no-sync"
# Every frame of it stands alone, so that those that are left out save the least.
HD_RECORDING = "{lineup} render {given_folder}/given.mov --size 1920x1080 --duration {seconds} -y -q --no-sync"
STILL = "{lineup} render {given_folder}/given.png --size 1920x1080 -y -q --no-sync"
CHECKS = (
    Contest("check, six channels", "{lineup} check {given}",
            (Rival("ffmpeg astats", "ffmpeg -nostdin -v error -i {given} -af astats -f null -", ">= 1"),), 600, 120, "",
            RECORDING),
    Contest("check, HD at 25 frames a second", "{lineup} check {given_folder}/given.mov --card hd",
            (Rival("ffmpeg decoding all of it", "ffmpeg -nostdin -v error -i {given_folder}/given.mov -f null -", ">= 1"),),
            600, 60, "", HD_RECORDING),
    # 100 ms behind decoding, which takes FFmpeg about 70.
    Contest("check, a still", "{lineup} check {given_folder}/given.png --card hd",
            (Rival("ffmpeg decoding it", "ffmpeg -nostdin -v error -i {given_folder}/given.png -f null -", ">= 0.4"),),
            0, 0, "", STILL),
)

STARTS = (
    Contest("start: lineup info", "{lineup} info", (Rival("/bin/true", "/bin/true"),), 0, 0, ""),
    Contest("start: 5 s of WAV", "{lineup} render {folder}/out.wav --duration 5 -y -q {sync}",
            (Rival("/bin/true", "/bin/true"),), 5, 5, "out.wav"),
)

# Peak memory of the longer against the shorter, in seconds of media; what makes the file that is read.
MEMORY = (
    ("memory: WAV", "{lineup} render {folder}/out.wav --duration {seconds} -y -q {sync}", 60, 3600, 3600, ""),
    ("memory: ProRes 422 HQ", "{lineup} render {folder}/out.mov --duration {seconds} -y -q {sync}", 60, 3600, 600, ""),
    ("memory: check", "{lineup} check -q {given}", 60, 3600, 600, RECORDING),
)

# Processor time of two streams that run side by side, ours and FFmpeg's of a finished file. {port} has a receiver that
# reads nothing.
STREAM = "--ident blits --audio-codec ac3 --bitrate 3M"
STREAMS = (
    ("stream: H.264 and AC-3",
     f"{{lineup}} send udp://127.0.0.1:{{port}} {STREAM} -q",
     "ffmpeg -nostdin -v error -re -stream_loop -1 -i {given} -c copy -f mpegts -muxrate 3000000 "
     "'udp://127.0.0.1:{port}?pkt_size=1316&bitrate=3000000'",
     f"{{lineup}} send {{given}} {STREAM} --for 134 --clock free -y -q", 60, 15),
)
