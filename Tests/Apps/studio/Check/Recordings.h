#pragma once

#include <lineup/Importer.h>

#include <QSize>
#include <QString>
#include <memory>

namespace test {

/// Writes a cycle of BLITS and the HD card to `file`, a QuickTime movie, five frames a second.
void RecordLineup(const std::shared_ptr<const lineup::Importer>& plugin, const QString& file, QSize size);

/// What a path did to it: L and R are swapped and silent from 5 s on for 0.3 s, Ls is upside down, the numbers are
/// those of the other matrix, and the frame at 8 s is black.
void DamageRecording(const QString& from, const QString& to, QSize size);

}  // namespace test
