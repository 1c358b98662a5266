#include "Apps/studio/Window/TransportBar.h"

#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Window/Theme.h"
#include "Apps/studio/Window/TransportIcons.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>

namespace studio {

namespace {

constexpr double kTimeSize = 1.45;  // of the window's text

}  // namespace

TransportBar::TransportBar(const Actions& actions, QWidget* parent)
    : QWidget(parent),
      mActions(actions),
      mToStart(Button(actions[Act::ToStart])),
      mPlay(Button(actions[Act::Play])),
      mLoop(Button(actions[Act::Loop])),
      mTime(new QLabel(this)),
      mLength(new QLabel(this)),
      mSound(new QLabel(this)) {
    setObjectName("transport");
    mTime->setObjectName("time");
    mTime->setAccessibleName(tr("Time"));
    mLength->setAccessibleName(tr("Length"));
    mSound->setObjectName("sound");
    mSound->setAccessibleName(tr("Sound"));
    mSound->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont large = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    large.setPointSizeF(font().pointSizeF() * kTimeSize);
    mTime->setFont(large);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    layout->addWidget(mToStart);
    layout->addWidget(mPlay);
    layout->addWidget(mLoop);
    layout->addSpacing(12);
    layout->addWidget(mTime);
    layout->addSpacing(4);
    layout->addWidget(mLength);
    layout->addWidget(mSound, 1);
    Dress();
}

QToolButton* TransportBar::Button(QAction& action) {
    auto* const button = new QToolButton(this);
    button->setDefaultAction(&action);
    button->setIconSize({18, 18});
    button->setFixedSize(38, 30);
    button->setAccessibleName(action.text().remove('&'));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void TransportBar::Dress() {
    mActions[Act::ToStart].setIcon(MakeIcon(Glyph::ToStart));
    mActions[Act::Loop].setIcon(MakeIcon(Glyph::Loop));
    ShowPlaying(mIsPlaying);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, mIsWarning ? Theme::Current().warning : Theme::Current().dim);
    mSound->setPalette(palette);
    palette.setColor(QPalette::WindowText, Theme::Current().dim);
    mLength->setPalette(palette);
    palette.setColor(QPalette::Button, Theme::Current().accent);
    mLoop->setPalette(mActions[Act::Loop].isChecked() ? palette : this->palette());
}

void TransportBar::ShowPlaying(bool playing) {
    mIsPlaying = playing;
    QAction& action = mActions[Act::Play];
    action.setIcon(MakeIcon(playing ? Glyph::Pause : Glyph::Play));
    action.setText(playing ? tr("&Pause") : tr("&Play"));
    action.setToolTip(playing ? tr("Pause (Space)") : tr("Play (Space)"));
    mPlay->setAccessibleName(playing ? tr("Pause") : tr("Play"));
    QPalette palette = this->palette();
    palette.setColor(QPalette::Button, Theme::Current().accent);
    mLoop->setPalette(mActions[Act::Loop].isChecked() ? palette : this->palette());
}

void TransportBar::ShowTime(double seconds, double lengthSeconds) {
    mTime->setText(TimeWords(seconds));
    mLength->setText("/ " + TimeWords(lengthSeconds));
}

void TransportBar::ShowSound(const QString& text, bool isWarning) {
    mIsWarning = isWarning;
    mSound->setText(text);
    mSound->setToolTip(text);
    Dress();
}

void TransportBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        Dress();
    }
    QWidget::changeEvent(event);
}

}  // namespace studio
