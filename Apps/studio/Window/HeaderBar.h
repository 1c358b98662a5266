#pragma once

#include "Apps/studio/Window/Actions.h"
#include "Apps/studio/Window/ElidedLabel.h"

#include <QWidget>

namespace studio {

/// What clip this is, and the buttons that change it.
class HeaderBar : public QWidget {
    Q_OBJECT

public:
    explicit HeaderBar(const Actions& actions, QWidget* parent = nullptr);

    void Show(const QString& signal, const QString& details);

private:
    ElidedLabel* mSignal;
    ElidedLabel* mDetails;
};

}  // namespace studio
