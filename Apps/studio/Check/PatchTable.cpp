#include "Apps/studio/Check/PatchTable.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Text/FaultSentences.h"
#include "Apps/studio/Window/Theme.h"
#include "Host/Lineup/Check/PatchColumns.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

namespace studio {

namespace {

constexpr int kName = 0;
constexpr int kOff = static_cast<int>(lineup::kPatchColumns.size()) + 1;  // behind the codes
constexpr int kDecimals = 1;
constexpr int kHeight = 176;
constexpr int kRowMargin = 1;  // pixels

}  // namespace

PatchTable::PatchTable(QWidget* parent) : QTableWidget(0, kOff + 1, parent) {
    setObjectName("patches");
    setAccessibleName(tr("Patches"));
    setAccessibleDescription(
        tr("The codes of each patch of the card, of 8 bits, as they came and as they are due. A patch that is off says "
           "by how much."));
    QStringList titles{tr("Patch")};
    for (const lineup::PatchColumn& column : lineup::kPatchColumns) {
        const auto code = QString::fromUtf8(column.code.data(), static_cast<qsizetype>(column.code.size()));
        titles += column.isDue ? tr("Due %1").arg(code) : code;
    }
    setHorizontalHeaderLabels(titles << tr("Off by"));
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(0);
    setShowGrid(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    hide();
}

void PatchTable::AddPatch(const lineup::PatchReport& patch) {
    const int row = rowCount();
    insertRow(row);
    const auto set = [&](int column, const QString& text) {
        auto* const cell = new QTableWidgetItem(text);
        cell->setData(Qt::UserRole, patch.isOff);
        if (column != kName) {
            cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
        setItem(row, column, cell);
    };
    set(kName, PatchWords(QString::fromStdString(patch.name)));
    for (int column = 1; column < kOff; ++column) {
        const auto code = lineup::kPatchColumns.at(static_cast<std::size_t>(column) - 1).Of(patch);
        set(column, code ? SignedNumber(*code, kDecimals) : QString());
    }
    set(kOff, patch.isOff ? SignedNumber(patch.off, kDecimals) : QString());
}

void PatchTable::Show(const lineup::CheckReport& report) {
    setRowCount(0);
    if (report.picture) {
        std::ranges::for_each(report.picture->patches, [this](const auto& patch) { AddPatch(patch); });
    }
    resizeColumnsToContents();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowMargin);
    Dress();
    setVisible(rowCount() > 0);
}

QSize PatchTable::sizeHint() const {
    const int columns = horizontalHeader()->length() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
    return {columns, kHeight};
}

void PatchTable::Dress() {
    for (int row = 0; row < rowCount(); ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            QTableWidgetItem* const cell = item(row, column);
            const Theme& theme = Theme::Current();
            cell->setForeground(cell->data(Qt::UserRole).toBool() ? theme.error : theme.text);
        }
    }
}

void PatchTable::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        Dress();
    }
    QTableWidget::changeEvent(event);
}

}  // namespace studio
