#pragma once

#include "Host/Interface/Importer/ImportEntry.h"
#include "Tests/Mac/Answers/AnswerWriter.h"

/// Questions to an importer, the same in every run, and what it answers: result codes and every byte that it could
/// have written, the room around what was asked for too. Pointers among the bytes are left out.
namespace test {

/// All of them.
void AskEverything(ImportEntryFunction* entry, AnswerWriter& answers);

/// Capabilities, formats, clip descriptions, private copies, and unknown requests.
void AskDescriptions(ImportEntryFunction* entry, AnswerWriter& answers);

/// The card in many sizes and both pixel formats.
void AskFrames(ImportEntryFunction* entry, AnswerWriter& answers);

/// Tones and idents, as sound and as peaks, at every instruction level of this machine.
void AskSound(ImportEntryFunction* entry, AnswerWriter& answers);

/// The settings request: its size, defaults, and the dialog, with what it asks of its controls.
void AskSettings(ImportEntryFunction* entry, AnswerWriter& answers);

}  // namespace test
