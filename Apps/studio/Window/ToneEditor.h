#pragma once

#include "Apps/studio/Document/StudioDocument.h"
#include "Host/Desktop/QtToolkit.h"

#include <QObject>
#include <QString>
#include <QWidget>

namespace studio {

/// Shows the plug-in's own settings dialog over the window. One in a program.
class ToneEditor {
public:
    ToneEditor(StudioDocument& document, QWidget& window);
    ~ToneEditor();
    ToneEditor(const ToneEditor&) = delete;
    ToneEditor& operator=(const ToneEditor&) = delete;

    /// Lets a person edit the tone; returns when the dialog is closed. What was chosen is one step of undo.
    /// Throws what the plug-in throws.
    void Edit();

    [[nodiscard]] bool IsOpen() const noexcept { return mIsOpen; }

    /// Closes the dialog as if by its close box.
    void Close() const;

private:
    StudioDocument& mDocument;
    zelui::qt::QtToolkit mToolkit;
    zelui::ui::UI_Toolkit* mBefore;
    bool mIsOpen = false;
};

}  // namespace studio
