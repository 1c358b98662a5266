#pragma once

#include "Apps/studio/Views/VectorscopeView.h"
#include "Apps/studio/Views/WaveformView.h"

#include <QSplitter>
#include <array>
#include <memory>
#include <vector>

namespace studio {

/// The scopes beside the picture, one above the other. With none of them shown it hides itself.
class ScopePanel : public QSplitter {
    Q_OBJECT

public:
    explicit ScopePanel(QWidget* parent = nullptr);

    void SetPicture(const std::shared_ptr<const CardPicture>& picture);
    void SetProbes(const std::vector<QPoint>& probes);
    void SetPatches(const std::vector<ScopePatch>& patches);
    void ShowScopes(bool waveform, bool parade, bool vectorscope);

private:
    std::array<Scope*, 3> mScopes;
};

}  // namespace studio
