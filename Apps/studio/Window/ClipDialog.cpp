#include "Apps/studio/Window/ClipDialog.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>

namespace studio {

namespace {

struct NamedSize {
    const char* name;
    int width;
    int height;
};
constexpr std::array<NamedSize, 6> kSizes = {{{"HD 1920 \u00D7 1080", 1920, 1080},
                                              {"HD 1280 \u00D7 720", 1280, 720},
                                              {"UHD 3840 \u00D7 2160", 3840, 2160},
                                              {"DCI 2K 2048 \u00D7 1080", 2048, 1080},
                                              {"SD 720 \u00D7 576 (625 lines)", 720, 576},
                                              {"SD 720 \u00D7 486 (525 lines)", 720, 486}}};
constexpr std::array<lineup::Rational, 9> kFrameRates = {
    {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {48, 1}, {50, 1}, {60000, 1001}, {60, 1}}};
constexpr std::array<int, 6> kRatesHz = {32000, 44100, 48000, 88200, 96000, 192000};

constexpr int kOwnRate = -1;  // one that is not in the list

struct NamedCard {
    const char* name;
    lineup::Card card;
};
constexpr std::array<NamedCard, 3> kCards = {
    {{QT_TRANSLATE_NOOP("ClipDialog", "Automatic"), lineup::Card::Auto},
     {QT_TRANSLATE_NOOP("ClipDialog", "HD, with the luma ramp"), lineup::Card::HD},
     {QT_TRANSLATE_NOOP("ClipDialog", "SD"), lineup::Card::SD}}};

double Seconds(const lineup::ClipDocument& values) {
    const lineup::Rational rate = values.picture.frameRate;
    return static_cast<double>(values.lengthFrames) * rate.den / rate.num;
}

}  // namespace

ClipDialog::ClipDialog(const lineup::Importer& plugin, const lineup::ClipDocument& values, const QString& title,
                       QWidget* parent)
    : QDialog(parent),
      mPlugin(plugin),
      mBefore(values),
      mChannels(new QComboBox(this)),
      mRate(new QComboBox(this)),
      mSize(new QComboBox(this)),
      mWidth(new QSpinBox(this)),
      mHeight(new QSpinBox(this)),
      mCard(new QComboBox(this)),
      mFrameRate(new QComboBox(this)),
      mLength(new QDoubleSpinBox(this)),
      mProblem(new QLabel(this)),
      mMoveTone(new QCheckBox(this)) {
    setObjectName("clipDialog");
    setWindowTitle(title);
    mChannels->setObjectName("channels");
    mRate->setObjectName("sampleRate");
    mSize->setObjectName("size");
    mWidth->setObjectName("width");
    mHeight->setObjectName("height");
    mCard->setObjectName("card");
    mFrameRate->setObjectName("frameRate");
    mLength->setObjectName("length");
    mProblem->setObjectName("clipProblem");
    mMoveTone->setObjectName("moveTone");
    mMoveTone->setText(tr("Set the &tone to %1 Hz").arg(static_cast<double>(UsualFrequency())));
    mWidth->setAccessibleName(tr("Picture width"));
    mHeight->setAccessibleName(tr("Picture height"));

    auto* const custom = new QHBoxLayout;
    custom->addWidget(mWidth);
    custom->addWidget(new QLabel("\u00D7", this));
    custom->addWidget(mHeight);
    custom->addWidget(new QLabel(tr("pixels"), this));
    custom->addStretch();
    auto* const form = new QFormLayout;
    form->addRow(tr("&Channels:"), mChannels);
    auto* const rate = new QHBoxLayout;
    rate->addWidget(mRate, 1);
    rate->addWidget(new QLabel(tr("Hz"), this));
    auto* const rateLabel = new QLabel(tr("Sample &rate:"), this);
    rateLabel->setBuddy(mRate);
    form->addRow(rateLabel, rate);
    form->addRow(tr("&Picture:"), mSize);
    form->addRow(QString(), custom);
    form->addRow(tr("C&ard:"), mCard);
    form->addRow(tr("&Frame rate:"), mFrameRate);
    form->addRow(tr("&Length:"), mLength);
    mProblem->setWordWrap(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    mOk = buttons->button(QDialogButtonBox::Ok);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(mProblem);
    layout->addWidget(mMoveTone);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    FillIn();
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mSize, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0 && index < static_cast<int>(kSizes.size())) {
            mWidth->setValue(kSizes[static_cast<std::size_t>(index)].width);
            mHeight->setValue(kSizes[static_cast<std::size_t>(index)].height);
        }
        Check();
    });
    connect(mRate, &QComboBox::currentTextChanged, this, &ClipDialog::Check);
    connect(mMoveTone, &QCheckBox::toggled, this, &ClipDialog::Check);
    connect(mWidth, &QSpinBox::valueChanged, this, &ClipDialog::Check);
    connect(mHeight, &QSpinBox::valueChanged, this, &ClipDialog::Check);
    Check();
}

void ClipDialog::FillIn() {
    const lineup::BarsAndToneInfo& settings = mBefore.settings;
    for (const lineup::ChannelLayout& layout : lineup::ChannelLayouts()) {
        mChannels->addItem(LayoutWords(layout), static_cast<int>(layout.channels.size()));
    }
    mChannels->setCurrentIndex(mChannels->findData(static_cast<int>(settings.numChannels)));
    mRate->setEditable(true);
    for (const int rateHz : kRatesHz) {
        mRate->addItem(QString::number(rateHz));
    }
    mRate->setCurrentText(QString::number(static_cast<double>(settings.sampleRate), 'g', 9));
    for (const NamedSize& size : kSizes) {
        mSize->addItem(QString::fromUtf8(size.name));
    }
    mSize->addItem(tr("Other"));
    for (QSpinBox* const box : {mWidth, mHeight}) {
        box->setRange(lineup::PictureFormat::kLeastSize, lineup::PictureFormat::kMostSize);
        box->setSingleStep(2);
    }
    mWidth->setValue(mBefore.picture.width);
    mHeight->setValue(mBefore.picture.height);
    for (const NamedCard& card : kCards) {
        mCard->addItem(tr(card.name), static_cast<int>(card.card));
    }
    mCard->setCurrentIndex(mCard->findData(static_cast<int>(mBefore.picture.card)));
    mFrameRate->setCurrentIndex(-1);
    for (std::size_t i = 0; i < kFrameRates.size(); ++i) {
        mFrameRate->addItem(tr("%1 fps").arg(FrameRateWords(kFrameRates[i])), static_cast<int>(i));
    }
    const auto* const rate = std::ranges::find_if(
        kFrameRates, [this](lineup::Rational row) { return SameRatio(row, mBefore.picture.frameRate); });
    if (rate == kFrameRates.end()) {
        mFrameRate->addItem(tr("%1 fps").arg(FrameRateWords(mBefore.picture.frameRate)), kOwnRate);
    }
    mFrameRate->setCurrentIndex(static_cast<int>(rate - kFrameRates.begin()));
    mLength->setDecimals(3);
    mLength->setRange(0.001, 24 * 3600);
    mLength->setSuffix(tr(" s"));
    mLength->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    mLength->setValue(Seconds(mBefore));
}

void ClipDialog::Check() {
    const auto* const size = std::ranges::find_if(kSizes, [this](const NamedSize& row) {
        return row.width == mWidth->value() && row.height == mHeight->value();
    });
    const QSignalBlocker quiet(mSize);
    mSize->setCurrentIndex(static_cast<int>(size - kSizes.begin()));  // the last one is "Other"
    bool isNumber = false;
    const double typedHz = mRate->currentText().toDouble(&isNumber);
    const double rateHz = isNumber ? typedHz : std::nan("");
    QString problem = SampleRateProblem(mPlugin, rateHz);
    // A rate too low for the tone is a question: what is to become of the tone?
    const QString toneProblem = problem.isEmpty() ? ToneProblem(mBefore.settings, rateHz) : QString();
    mMoveTone->setVisible(!toneProblem.isEmpty());
    if (!MovesTone()) {
        problem += toneProblem;
    }
    if (mWidth->value() % 2 != 0 || mHeight->value() % 2 != 0) {
        problem = tr("Width and height must be even.");
    }
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, Theme::Current().warning);
    mProblem->setPalette(palette);
    mProblem->setText(problem);
    mProblem->setVisible(!problem.isEmpty());
    mOk->setEnabled(problem.isEmpty());
}

float ClipDialog::UsualFrequency() const {
    return mPlugin.DefaultSettings(lineup::Clip::kHostSampleRate).frequency;
}

bool ClipDialog::MovesTone() const {
    return !mMoveTone->isHidden() && mMoveTone->isChecked();
}

lineup::Rational ClipDialog::FrameRate() const {
    const int index = mFrameRate->currentData().toInt();
    return index == kOwnRate ? mBefore.picture.frameRate : kFrameRates[static_cast<std::size_t>(index)];
}

lineup::ClipDocument ClipDialog::Values() const {
    lineup::ClipDocument values = mBefore;
    lineup::BarsAndToneInfo& settings = values.settings;
    if (mRate->currentText() != QString::number(static_cast<double>(settings.sampleRate), 'g', 9)) {
        settings.sampleRate = mRate->currentText().toFloat();
    }
    if (MovesTone()) {
        settings.frequency = UsualFrequency();
    }
    const auto channels = static_cast<std::uint32_t>(mChannels->currentData().toInt());
    if (mChannels->currentIndex() >= 0 && channels != settings.numChannels) {
        settings.numChannels = channels;
        settings.channelType = lineup::ChannelTypeFor(channels);
        const lineup::Ident* const ident = lineup::FindIdent(settings);
        if (ident == nullptr || ident->numChannels != channels) {
            settings.identifyChannels = 0;
        }
    }
    values.picture = {mWidth->value(), mHeight->value(), static_cast<lineup::Card>(mCard->currentData().toInt()),
                      FrameRate()};
    const bool sameLength = mLength->value() == std::round(Seconds(mBefore) * 1000) / 1000;
    if (!sameLength || !SameRatio(values.picture.frameRate, mBefore.picture.frameRate)) {
        const double frames = mLength->value() * values.picture.frameRate.num / values.picture.frameRate.den;
        values.lengthFrames = std::clamp<std::int64_t>(std::llround(frames), 1, lineup::ClipDocument::kMostFrames);
    }
    return values;
}

}  // namespace studio
