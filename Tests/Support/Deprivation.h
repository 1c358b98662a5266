#pragma once

#include <filesystem>

namespace test {

/// What can be taken away from a child process before it becomes a program (see ChildProgram).

/// The right of a super-user to write what its permissions do not let it: root becomes an ordinary owner of
/// root's files. Changes nothing for others. False when it could not be taken away.
bool LoseTheSuperusersRights();

/// Files cannot grow past `bytes`: writing more fails, and raises SIGXFSZ.
bool LimitFileSize(unsigned long bytes);

/// Mounts a disk of `bytes` (whole pages) at `folder`, which this process and what it becomes see alone. False where
/// that is not allowed.
bool MountSmallDisk(const std::filesystem::path& folder, unsigned long bytes);

/// True where a child can mount one. Tries it in a child.
bool CanMountDisks(const std::filesystem::path& folder);

}  // namespace test
