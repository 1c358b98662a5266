#pragma once

#include "Apps/studio/Sound/Player.h"

#include <QMenu>
#include <QObject>

namespace studio {

/// The sound devices as a menu: the system's choice, and each by its name.
class DeviceMenu : public QObject {
    Q_OBJECT

public:
    DeviceMenu(Player& player, QWidget* parent);

    [[nodiscard]] QMenu& Menu() noexcept { return *mMenu; }

private:
    void Fill();

    Player& mPlayer;
    QMenu* mMenu;
};

}  // namespace studio
