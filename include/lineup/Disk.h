#pragma once

namespace lineup {

/// Whether a file must be on the disk before it gets its name.
enum class Disk { Wait, DoNotWait };

}  // namespace lineup
