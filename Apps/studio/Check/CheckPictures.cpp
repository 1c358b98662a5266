#include "Apps/studio/Check/CheckPictures.h"

#include "Apps/studio/Check/CodeScale.h"
#include "Apps/studio/Check/RecordingPicture.h"
#include "Apps/studio/Document/ClipWords.h"

#include <QVBoxLayout>
#include <utility>

namespace studio {

CheckPictures::CheckPictures(std::shared_ptr<const lineup::Importer> importer, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      mImporter(std::move(importer)),
      mFoundTitle(new QLabel(this)),
      mFound(new PictureView(this)),
      mExpectedTitle(new QLabel(tr("Expected"), this)),
      mExpected(new PictureView(this)),
      mReadout(new PixelReadout(this)),
      mScopes(new ScopePanel(this)) {
    setChildrenCollapsible(false);
    mFound->setObjectName("foundPicture");
    mFound->setAccessibleName(tr("Picture of the recording"));
    mExpected->setObjectName("expectedPicture");
    mExpected->setAccessibleName(tr("Expected picture"));
    mFoundTitle->setObjectName("foundTitle");
    mReadout->setObjectName("foundReadout");
    auto* const pictures = new QWidget(this);
    auto* const layout = new QVBoxLayout(pictures);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QLabel* const title : {mFoundTitle, mExpectedTitle}) {
        title->setContentsMargins(8, 2, 8, 2);
        layout->addWidget(title);
        layout->addWidget(title == mFoundTitle ? mFound : mExpected, 1);
    }
    layout->addWidget(mReadout);
    addWidget(pictures);
    addWidget(mScopes);
    setStretchFactor(0, 1);
    setStretchFactor(1, 1);
    connect(&mFoundLoader, &PictureLoader::Loaded, this,
            [this](const std::shared_ptr<const CardPicture>& picture) { Show(picture, mWanted); });
    connect(&mFoundLoader, &PictureLoader::Failed, this, &CheckPictures::Failed);
    connect(&mExpectedLoader, &PictureLoader::Loaded, mExpected, &PictureView::SetPicture);
    connect(&mExpectedLoader, &PictureLoader::Failed, this, &CheckPictures::Failed);
    connect(mFound, &PictureView::PixelPointedAt, mReadout, &PixelReadout::PointAt);
    connect(mFound, &PictureView::PinWanted, &mProbes, &Probes::Toggle);
    connect(&mProbes, &Probes::Changed, this, [this] {
        mFound->SetProbes(mProbes.Pixels());
        mReadout->SetProbes(mProbes.Pixels());
        mScopes->SetProbes(mProbes.Pixels());
    });
}

void CheckPictures::SetRecording(const QString& file, const lineup::CheckReport& report) {
    mFile = file;
    mProbes.Clear();
    mFoundLoader.Forget();
    mExpectedLoader.Forget();
    ShowFound(nullptr);
    mExpected->SetPicture(nullptr);
    setVisible(report.picture.has_value());
    if (report.picture) {
        const std::vector<ScopePatch> patches = ScopePatches(*report.picture);
        std::vector<QRectF> outlines;
        for (const ScopePatch& patch : patches) {
            if (patch.isOff) {
                outlines.push_back(patch.area);
            }
        }
        mScopes->SetPatches(patches);
        mFound->SetOutlines(outlines);
        LoadExpected(*report.picture);
    }
}

// The card in the frame's own size, by the matrix that the recording's picture is shown by.
void CheckPictures::LoadExpected(const lineup::PictureReport& picture) {
    const bool hasCard = !picture.card.empty();
    mExpectedTitle->setVisible(hasCard);
    mExpected->setVisible(hasCard);
    if (hasCard) {
        const lineup::PictureFormat format{.width = picture.width,
                                           .height = picture.height,
                                           .card = picture.card == "hd" ? lineup::Card::HD : lineup::Card::SD};
        mExpectedLoader.Load(std::make_shared<const lineup::Clip>(mImporter), format, CodeScale::Of(picture).matrix);
    }
}

void CheckPictures::GoTo(double seconds) {
    if (isHidden()) {
        return;
    }
    mWanted = seconds;
    mFoundLoader.Load([file = mFile, seconds](const PictureLoader::IsWanted& isWanted) {
        return ReadRecordingPicture(file, seconds, isWanted);
    });
}

void CheckPictures::Show(const std::shared_ptr<const CardPicture>& picture, double seconds) {
    mFoundLoader.Forget();
    mFoundTitle->setText(tr("Found at %1").arg(TimeWords(seconds)));
    ShowFound(picture);
}

void CheckPictures::ShowFound(const std::shared_ptr<const CardPicture>& picture) {
    mProbes.KeepWithin(picture == nullptr ? QSize() : QSize(picture->Width(), picture->Height()));
    mFound->SetPicture(picture);
    mScopes->SetPicture(picture);
    mReadout->SetPicture(picture);
}

void CheckPictures::ShowScopes(bool waveform, bool parade, bool vectorscope) {
    mScopes->ShowScopes(waveform, parade, vectorscope);
}

}  // namespace studio
