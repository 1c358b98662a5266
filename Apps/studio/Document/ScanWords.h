#pragma once

#include <lineup/Scan.h>

#include <QtGlobal>
#include <array>

namespace studio {

struct ScanWord {
    lineup::Scan scan;
    const char* text;  ///< to be translated in the context "Scan"
};

/// What windows call the ways of scanning, in the order in which they offer them.
inline constexpr std::array<ScanWord, 3> kScanWords = {{
    {lineup::Scan::Progressive, QT_TRANSLATE_NOOP("Scan", "Progressive")},
    {lineup::Scan::TopFieldFirst, QT_TRANSLATE_NOOP("Scan", "Interlaced, top field first")},
    {lineup::Scan::BottomFieldFirst, QT_TRANSLATE_NOOP("Scan", "Interlaced, bottom field first")},
}};

}  // namespace studio
