#include "Apps/studio/Window/TransportBar.h"

#include <lineup/Timecode.h>
#include <lineup/UsageError.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Text/Counted.h"
#include "Apps/studio/Window/Theme.h"
#include "Apps/studio/Window/TransportIcons.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>
#include <limits>

namespace studio {

namespace {

constexpr double kTimeSize = 1.45;  // of the window's text
constexpr int kQuietestDb = -40;    // below it the slider is at silence
constexpr int kVolumeWidth = 70;

}  // namespace

TransportBar::TransportBar(const Actions& actions, QWidget* parent)
    : QWidget(parent),
      mActions(actions),
      mToStart(Button(actions[Act::ToStart])),
      mPlay(Button(actions[Act::Play])),
      mLoop(Button(actions[Act::Loop])),
      mTime(new QLabel(this)),
      mTimecode(new QLineEdit(this)),
      mFrame(new QSpinBox(this)),
      mLength(new ElidedLabel(this)),
      mMute(Button(actions[Act::Mute])),
      mVolume(new KeySlider(Qt::Horizontal, this)),
      mSound(new ElidedLabel(this)) {
    setObjectName("transport");
    mTime->setObjectName("time");
    mTimecode->setObjectName("timecode");
    mTimecode->setAccessibleName(tr("Time code"));
    mTimecode->setToolTip(tr("Time code of the playhead; type one and press Enter to go there"));
    mTimecode->setAlignment(Qt::AlignCenter);
    mTimecode->setFixedWidth(fontMetrics().horizontalAdvance("00:00:00:00") + 20);
    connect(mTimecode, &QLineEdit::returnPressed, this, &TransportBar::TimecodeTyped);
    mFrame->setObjectName("frame");
    mFrame->setAccessibleName(tr("Frame"));
    mFrame->findChild<QLineEdit*>()->setAccessibleName(tr("Frame"));
    mFrame->setToolTip(tr("Frame of the playhead; type one and press Enter to go there"));
    mFrame->setButtonSymbols(QAbstractSpinBox::NoButtons);
    mFrame->setKeyboardTracking(false);
    mFrame->setPrefix(tr("Frame "));
    connect(mFrame, &QSpinBox::valueChanged, this, [this](int frame) { Q_EMIT FrameWanted(frame); });
    mLength->setObjectName("lengthText");
    mSound->setObjectName("sound");
    mSound->setMinimumWidth(fontMetrics().horizontalAdvance(tr("No sound")));
    mSound->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont large = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    large.setPointSizeF(font().pointSizeF() * kTimeSize);
    mTime->setFont(large);
    mVolume->setObjectName("volume");
    mVolume->setAccessibleName(tr("Volume"));
    mVolume->setRange(kQuietestDb - 1, 0);
    mVolume->setPageStep(6);
    mVolume->setFixedWidth(kVolumeWidth);
    connect(mVolume, &QSlider::valueChanged, this, &TransportBar::VolumeMoved);
    ArrangeIn(*new QHBoxLayout(this));
    VolumeMoved();
    Dress();
}

void TransportBar::ArrangeIn(QHBoxLayout& layout) {
    layout.setContentsMargins(8, 4, 8, 4);
    layout.setSpacing(4);
    for (QToolButton* const button : {mToStart, mPlay, mLoop}) {
        layout.addWidget(button);
    }
    layout.addSpacing(8);
    layout.addWidget(mTime);
    layout.addSpacing(4);
    layout.addWidget(mTimecode);
    layout.addWidget(mFrame);
    layout.addSpacing(4);
    layout.addWidget(mLength);
    layout.addWidget(mSound, 1);
    layout.addWidget(mMute);
    layout.addWidget(mVolume);
}

void TransportBar::SetVolumeDb(int levelDb) {
    mVolume->setValue(levelDb);
}

void TransportBar::VolumeMoved() {
    const int levelDb = mVolume->value();
    const bool isSilent = levelDb < kQuietestDb;
    mVolume->setToolTip(isSilent ? tr("Volume: silent") : tr("Volume: %1 dB").arg(SignedNumber(levelDb, 0)));
    mVolume->setAccessibleDescription(mVolume->toolTip());
    Q_EMIT VolumeWanted(isSilent ? 0.0F : static_cast<float>(std::pow(10.0, levelDb / 20.0)));
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
    mActions[Act::Mute].setIcon(MakeIcon(mActions[Act::Mute].isChecked() ? Glyph::Muted : Glyph::Sound));
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

// What is being typed stays.
void TransportBar::ShowTime(double seconds, std::int64_t frame) {
    mTime->setText(TimeWords(seconds));
    mTime->setAccessibleName(tr("Time: %1").arg(mTime->text()));
    if (!mTimecode->hasFocus()) {
        mTimecode->setText(TimecodeWords(frame, mFrameRate));
    }
    if (!mFrame->hasFocus()) {
        const QSignalBlocker quiet(mFrame);
        mFrame->setValue(static_cast<int>(frame));
    }
}

void TransportBar::SetLength(double seconds, std::int64_t frames, lineup::Rational frameRate, double cycles) {
    mFrameRate = frameRate;
    const QSignalBlocker quiet(mFrame);
    mFrame->setRange(0, static_cast<int>(std::min<std::int64_t>(frames, std::numeric_limits<int>::max())));
    mTimecode->setVisible(lineup::Timecode::Labels(frameRate));
    QString text = "/ " + TimeWords(seconds) +
                   FormFor(static_cast<double>(frames), QT_TRANSLATE_NOOP("Counted", " \u00B7 %1 frame"),
                           QT_TRANSLATE_NOOP("Counted", " \u00B7 %1 frames"))
                       .arg(frames);
    if (cycles > 0) {
        const double shown = std::round(cycles * 100) / 100;
        text += FormFor(shown, QT_TRANSLATE_NOOP("Counted", " \u00B7 %1 cycle"),
                        QT_TRANSLATE_NOOP("Counted", " \u00B7 %1 cycles"))
                    .arg(shown);
    }
    mLength->setText(text);
    mLength->setAccessibleName(tr("Length: %1").arg(text.mid(2)));
}

void TransportBar::TimecodeTyped() {
    try {
        const lineup::Timecode typed(mTimecode->text().toStdString(), mFrameRate);
        mTimecode->clearFocus();
        Q_EMIT FrameWanted(typed.Frames());
    } catch (const lineup::UsageError&) {
        mTimecode->selectAll();  // to be typed again
    }
}

void TransportBar::ShowSound(const QString& text, bool isWarning) {
    mIsWarning = isWarning;
    mSound->setText(text);
    mSound->setAccessibleName(tr("Sound: %1").arg(text));
    Dress();
}

void TransportBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        Dress();
    }
    QWidget::changeEvent(event);
}

}  // namespace studio
