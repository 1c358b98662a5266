#include "Apps/studio/Window/HeaderBar.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace studio {

namespace {

constexpr double kSignalSize = 1.25;  // of the window's text

constexpr int kButtonRoom = 18;  // beside a button's text

QPushButton* Button(QAction& action, QWidget* parent) {
    auto* const button = new QPushButton(action.text().remove('&'), parent);
    button->setObjectName(action.objectName() + "Button");
    button->setToolTip(action.toolTip());
    button->setMinimumSize(button->sizeHint() + QSize(kButtonRoom, 4));
    QObject::connect(button, &QPushButton::clicked, &action, &QAction::trigger);
    return button;
}

}  // namespace

HeaderBar::HeaderBar(const Actions& actions, QWidget* parent)
    : QWidget(parent), mSignal(new ElidedLabel(this)), mDetails(new ElidedLabel(this)) {
    mSignal->setObjectName("signal");
    mDetails->setObjectName("details");
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * kSignalSize);
    large.setBold(true);
    mSignal->setFont(large);
    mDetails->setForegroundRole(QPalette::PlaceholderText);
    auto* const words = new QVBoxLayout;
    words->setSpacing(1);
    words->addWidget(mSignal);
    words->addWidget(mDetails);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 10, 8);
    layout->addLayout(words, 1);
    for (const Act act : {Act::ClipSettings, Act::EditTone, Act::Export}) {
        layout->addWidget(Button(actions[act], this));
    }
}

void HeaderBar::Show(const QString& signal, const QString& details) {
    mSignal->setText(signal);
    mSignal->setAccessibleName(tr("Sound of the clip: %1").arg(signal));
    mDetails->setText(details);
    mDetails->setAccessibleName(tr("Format of the clip: %1").arg(details));
}

}  // namespace studio
