"""Codecs and containers that a line-up goes through, all of them FFmpeg's."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Chain:
    """`arguments` of FFmpeg behind the sound; stereo and 5.1 may need other ones. Empty where it cannot hold them."""

    name: str
    extension: str
    stereo: str
    surround: str
    lossy: bool = False
    bits: int = None
    surround_filter: str = ""
    dull_lfe: bool = False  # keeps nothing but low frequencies of that channel

    def arguments(self, channels):
        return {2: self.stereo, 6: self.surround}[channels].split()


PICTURE = "-f lavfi -i color=size=64x64:rate=25:duration=60 -shortest -c:v mpeg2video "  # MXF asks for one
FLAC = "-c:a flac -sample_fmt s32 -bits_per_raw_sample 24"
LOSSLESS = (
    Chain("PCM 24, WAV", "wav", "-c:a pcm_s24le", "-c:a pcm_s24le", bits=24),
    Chain("PCM 16, WAV", "wav", "-c:a pcm_s16le", "-c:a pcm_s16le", bits=16),
    Chain("PCM 24, MOV", "mov", "-c:a pcm_s24le", "-c:a pcm_s24le", bits=24),
    Chain("PCM 16, MKV", "mkv", "-c:a pcm_s16le", "-c:a pcm_s16le", bits=16),
    Chain("PCM 24, MXF", "mxf", PICTURE + "-c:a pcm_s24le", PICTURE + "-c:a pcm_s24le", bits=24),
    Chain("PCM 24, TS", "ts", "-c:a s302m -strict -2 -sample_fmt s32 -bits_per_raw_sample 24",
          "-c:a s302m -strict -2 -sample_fmt s32 -bits_per_raw_sample 24", bits=24),
    Chain("FLAC", "flac", FLAC, FLAC, bits=24),
    Chain("ALAC, M4A", "m4a", "-c:a alac -sample_fmt s32p", "-c:a alac -sample_fmt s32p", bits=24),
)
LOSSY = (
    Chain("AAC 128, M4A", "m4a", "-c:a aac -b:a 128k", "", lossy=True),
    Chain("AAC 192, M4A", "m4a", "-c:a aac -b:a 192k", "-c:a aac -b:a 192k", lossy=True),
    Chain("AAC 384, TS", "ts", "-c:a aac -b:a 192k", "-c:a aac -b:a 384k", lossy=True),
    Chain("AC-3, TS", "ts", "-c:a ac3 -b:a 192k", "-c:a ac3 -b:a 448k", lossy=True, dull_lfe=True),
    Chain("E-AC-3, MKV", "mkv", "-c:a eac3 -b:a 192k", "-c:a eac3 -b:a 640k", lossy=True, dull_lfe=True),
    Chain("Opus, OGG", "ogg", "-c:a libopus -b:a 128k", "-c:a libopus -b:a 384k -mapping_family 1", lossy=True,
          surround_filter="channelmap=0|1|2|3|4|5:5.1", dull_lfe=True),
    Chain("MP2, TS", "ts", "-c:a mp2 -b:a 256k", "", lossy=True),
    Chain("MP3", "mp3", "-c:a libmp3lame -b:a 256k", "", lossy=True),
    Chain("Vorbis, OGG", "ogg", "-c:a libvorbis -q:a 6", "-c:a libvorbis -q:a 6", lossy=True,
          dull_lfe=True),
)


def fitting(chains, draft):
    """The chains that can hold what is at the inputs: not in the LFE what it does not keep."""
    held = draft.holds()
    lfe_is_dull = len(held) < 6 or held[3] is None or (held[3] == "LFE" and not draft.tone)
    return [chain for chain in chains if chain.arguments(len(held)) and (lfe_is_dull or not chain.dull_lfe)]
