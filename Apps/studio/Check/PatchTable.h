#pragma once

#include <lineup/CheckReport.h>

#include <QTableWidget>

namespace studio {

/// The patches of the card that was found, a row each, in the order of the card: their codes as they came and as they
/// are due. Those that are off are red and say by how much.
class PatchTable : public QTableWidget {
    Q_OBJECT

public:
    explicit PatchTable(QWidget* parent = nullptr);

    /// Hides itself where no card was found.
    void Show(const lineup::CheckReport& report);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {200, 76}; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void Dress();
    void AddPatch(const lineup::PatchReport& patch);
};

}  // namespace studio
