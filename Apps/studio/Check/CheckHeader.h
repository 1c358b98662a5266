#pragma once

#include <lineup/CheckReport.h>
#include "Apps/studio/Window/ElidedLabel.h"

#include <QAction>
#include <QWidget>
#include <vector>

namespace studio {

/// What was checked and what came of it, with the window's commands beside it.
class CheckHeader : public QWidget {
    Q_OBJECT

public:
    explicit CheckHeader(const std::vector<QAction*>& commands, QWidget* parent = nullptr);

    void Show(const QString& file, const lineup::CheckReport& report);

private:
    ElidedLabel* mVerdict;
    ElidedLabel* mFound;
    ElidedLabel* mCodes;
};

}  // namespace studio
