#pragma once

#include <lineup/Api.h>

#include <string>

namespace lineup {

inline namespace parts {

/// What a person named as a recording.
struct RecordingName {
    enum class Kind { File, StandardInput, Url };

    Kind kind = Kind::File;
    std::string text;  ///< the file's path, or the URL
};

/// "-" is standard input. A word, "://" and more is a URL, and so is "data:" and more, unless a file of that
/// name exists; "file:" before a path is left out. A file NAME.sdp with a session description stands for the stream
/// that it describes: a URL that holds its text. Everything else is a file.
[[nodiscard]] LINEUP_API RecordingName ParseRecordingName(const std::string& recording);

}  // namespace parts

}  // namespace lineup
