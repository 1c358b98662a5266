#include "Apps/studio/Views/ScopePanel.h"

namespace studio {

ScopePanel::ScopePanel(QWidget* parent)
    : QSplitter(Qt::Vertical, parent),
      mScopes{new WaveformView(WaveformView::Kind::Luma, this), new WaveformView(WaveformView::Kind::Parade, this),
              new VectorscopeView(this)} {
    setChildrenCollapsible(false);
    for (Scope* const scope : mScopes) {
        addWidget(scope);
    }
}

void ScopePanel::SetPicture(const std::shared_ptr<const CardPicture>& picture) {
    for (Scope* const scope : mScopes) {
        scope->SetPicture(picture);
    }
}

void ScopePanel::SetProbes(const std::vector<QPoint>& probes) {
    for (Scope* const scope : mScopes) {
        scope->SetProbes(probes);
    }
}

void ScopePanel::SetPatches(const std::vector<ScopePatch>& patches) {
    for (Scope* const scope : mScopes) {
        scope->SetPatches(patches);
    }
}

void ScopePanel::ShowScopes(bool waveform, bool parade, bool vectorscope) {
    mScopes[0]->setVisible(waveform);
    mScopes[1]->setVisible(parade);
    mScopes[2]->setVisible(vectorscope);
    setVisible(waveform || parade || vectorscope);
}

}  // namespace studio
