#include "Apps/studio/Window/DeviceMenu.h"

#include <QActionGroup>
#include <QMediaDevices>

namespace studio {

DeviceMenu::DeviceMenu(Player& player, QWidget* parent)
    : QObject(parent), mPlayer(player), mMenu(new QMenu(tr("Sound &Device"), parent)) {
    mMenu->setObjectName("devices");
    connect(mMenu, &QMenu::aboutToShow, this, &DeviceMenu::Fill);
    Fill();
}

// A device that was chosen and is not there keeps its place: it is used again once it is back.
void DeviceMenu::Fill() {
    mMenu->clear();
    auto* const group = new QActionGroup(mMenu);
    const QByteArray wanted = mPlayer.WantedDevice();
    bool isListed = wanted.isEmpty();
    const auto add = [&](const QString& name, const QByteArray& id) {
        QAction* const action = mMenu->addAction(QString(name).replace('&', "&&"));
        action->setCheckable(true);
        action->setChecked(id == wanted);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, id] { mPlayer.UseDevice(id); });
        isListed = isListed || id == wanted;
    };
    add(tr("Automatic"), {});
    for (const QAudioDevice& device : QMediaDevices::audioOutputs()) {
        add(device.description(), device.id());
    }
    if (!isListed) {
        add(tr("%1 (not there)").arg(QString::fromUtf8(wanted)), wanted);
    }
}

}  // namespace studio
