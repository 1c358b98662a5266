#pragma once

#include <lineup/CheckReport.h>
#include <lineup/Clip.h>
#include "Apps/studio/Views/PictureLoader.h"
#include "Apps/studio/Views/PictureView.h"
#include "Apps/studio/Views/PixelReadout.h"
#include "Apps/studio/Views/Probes.h"
#include "Apps/studio/Views/ScopePanel.h"

#include <QLabel>
#include <QSplitter>
#include <QString>
#include <memory>

namespace studio {

/// The picture of a recording at a place of it over the one that is expected, and the scopes of the former.
class CheckPictures : public QSplitter {
    Q_OBJECT

public:
    explicit CheckPictures(std::shared_ptr<const lineup::Importer> importer, QWidget* parent = nullptr);

    /// Without pictures there is nothing to see.
    void SetRecording(const QString& file, const lineup::CheckReport& report);

    /// Shows the picture at a place, s from the start of the recording.
    void GoTo(double seconds);

    /// Shows this one, of a playback.
    void Show(const std::shared_ptr<const CardPicture>& picture, double seconds);

    void ShowScopes(bool waveform, bool parade, bool vectorscope);

Q_SIGNALS:
    void Failed(const QString& problem);

private:
    void ShowFound(const std::shared_ptr<const CardPicture>& picture);
    void LoadExpected(const lineup::PictureReport& picture);

    std::shared_ptr<const lineup::Importer> mImporter;
    QString mFile;
    double mWanted = 0;  // s, the place of the picture that was asked for last
    PictureLoader mFoundLoader;
    PictureLoader mExpectedLoader;
    Probes mProbes;
    QLabel* mFoundTitle;
    PictureView* mFound;
    QLabel* mExpectedTitle;
    PictureView* mExpected;
    PixelReadout* mReadout;
    ScopePanel* mScopes;
};

}  // namespace studio
