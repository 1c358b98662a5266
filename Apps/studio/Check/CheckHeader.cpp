#include "Apps/studio/Check/CheckHeader.h"

#include "Apps/studio/Check/CheckWords.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace studio {

namespace {

constexpr double kVerdictSize = 1.25;  // of the window's text
constexpr int kHeaderButtonRoom = 18;

// A switch is a box to tick, anything else a button.
QWidget* Control(QAction& command, QWidget* parent) {
    const QString text = command.text().remove('&');
    QWidget* control = nullptr;
    if (command.isCheckable()) {
        auto* const box = new QCheckBox(text, parent);
        QObject::connect(box, &QCheckBox::toggled, &command, &QAction::setChecked);
        QObject::connect(&command, &QAction::toggled, box, &QCheckBox::setChecked);
        control = box;
    } else {
        auto* const button = new QPushButton(text, parent);
        button->setMinimumSize(button->sizeHint() + QSize(kHeaderButtonRoom, 4));
        QObject::connect(button, &QPushButton::clicked, &command, &QAction::trigger);
        const auto follow = [button, &command] {
            button->setText(command.text().remove('&'));
            button->setEnabled(command.isEnabled());
        };
        QObject::connect(&command, &QAction::changed, button, follow);
        control = button;
    }
    control->setObjectName(command.objectName() + "Button");
    control->setToolTip(command.toolTip());
    return control;
}

}  // namespace

CheckHeader::CheckHeader(const std::vector<QAction*>& commands, QWidget* parent)
    : QWidget(parent), mVerdict(new ElidedLabel(this)), mFound(new ElidedLabel(this)), mCodes(new ElidedLabel(this)) {
    mVerdict->setObjectName("verdict");
    mFound->setObjectName("found");
    mCodes->setObjectName("codes");
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * kVerdictSize);
    large.setBold(true);
    mVerdict->setFont(large);
    auto* const words = new QVBoxLayout;
    words->setSpacing(1);
    for (ElidedLabel* const label : {mVerdict, mFound, mCodes}) {
        label->setTextFormat(Qt::PlainText);
        words->addWidget(label);
    }
    mFound->setForegroundRole(QPalette::PlaceholderText);
    mCodes->setForegroundRole(QPalette::PlaceholderText);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 10, 8);
    layout->setSpacing(14);
    layout->addLayout(words, 1);
    for (QAction* const command : commands) {
        layout->addWidget(Control(*command, this));
    }
}

void CheckHeader::Show(const QString& file, const lineup::CheckReport& report) {
    mVerdict->setText(QFileInfo(file).fileName() + ": " + VerdictWords(report));
    mFound->setText(FoundWords(report));
    mCodes->setText(CodesWords(report));
    mCodes->setVisible(!mCodes->text().isEmpty());
}

}  // namespace studio
