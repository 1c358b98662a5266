#include "Apps/studio/Window/ToneEditor.h"

#include <QApplication>
#include <QScopeGuard>

namespace studio {

ToneEditor::ToneEditor(StudioDocument& document, QWidget& window)
    : mDocument(document), mToolkit(&window), mBefore(zelui::ui::InstallToolkit(&mToolkit)) {}

ToneEditor::~ToneEditor() {
    zelui::ui::InstallToolkit(mBefore);
}

void ToneEditor::Edit() {
    if (mIsOpen) {
        return;
    }
    mIsOpen = true;
    const auto closed = qScopeGuard([this] { mIsOpen = false; });
    lineup::ClipDocument values = mDocument.Values();
    mDocument.Plugin().EditSettings(values.settings);
    if (mToolkit.LastOutcome() == zelui::ui::DialogOutcome::Accepted) {
        mDocument.Edit(values, QObject::tr("Edit Tone"));
    }
}

void ToneEditor::Close() const {
    if (QWidget* const dialog = QApplication::activeModalWidget(); mIsOpen && dialog != nullptr) {
        dialog->close();
    }
}

}  // namespace studio
