#pragma once

#include <lineup/Api.h>

#include <filesystem>

namespace lineup {
inline namespace parts {

/// Whether what lies at a place that a program searches by itself was put there by somebody whose code the
/// program runs anyway: its user, root, or the owner of the program's own file.
///
/// Throws Error, naming the file or folder and what is wrong with it, when `place`, a folder on the way from
/// `prefix` down to it, or anything inside it belongs to somebody else or can be written to by everybody.
/// A sticky bit is no excuse: others cannot replace what is there, but they can be there first. Folders
/// above `prefix` are not looked at: whoever can change those can put another program in place of this one.
/// Members of a folder's group count as people its owner trusts. A link is judged by itself and by what it
/// leads to, wherever that is.
LINEUP_API void RequireTrusted(const std::filesystem::path& prefix, const std::filesystem::path& place);

}  // namespace parts
}  // namespace lineup
