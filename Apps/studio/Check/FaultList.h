#pragma once

#include <lineup/CheckReport.h>

#include <QTreeWidget>

namespace studio {

/// The faults that a check found, a row each, and under them what else a person should know.
class FaultList : public QTreeWidget {
    Q_OBJECT

public:
    explicit FaultList(QWidget* parent = nullptr);

    void Show(const lineup::CheckReport& report);

    [[nodiscard]] QSize sizeHint() const override { return {800, 176}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {300, 76}; }

Q_SIGNALS:
    /// A person has chosen the fault of this place in the report.
    void Chosen(std::size_t fault);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Dress();
    void AddFault(const lineup::CheckFault& fault);
    void AddNote(const lineup::CheckNote& note);
    void Choose(const QTreeWidgetItem* item);
};

}  // namespace studio
