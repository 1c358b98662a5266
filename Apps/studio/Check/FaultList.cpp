#include "Apps/studio/Check/FaultList.h"

#include "Apps/studio/Check/CheckWords.h"
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Text/FaultSentences.h"
#include "Apps/studio/Window/Theme.h"

#include <QEvent>
#include <QHeaderView>
#include <QSignalBlocker>

namespace studio {

namespace {

enum Column : int { kKind, kWhere, kMeasured, kDue, kPlace, kWords, kColumns };

constexpr int kNoFault = -1;

}  // namespace

FaultList::FaultList(QWidget* parent) : QTreeWidget(parent) {
    setObjectName("faults");
    setAccessibleName(tr("Faults"));
    setAccessibleDescription(tr("What the check found. A fault that is chosen is shown at its place."));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setColumnCount(kColumns);
    setHeaderLabels({tr("Fault"), tr("Where"), tr("Measured"), tr("Expected"), tr("Time"), tr("In words")});
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) { Choose(item); });
    connect(this, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem* item) { Choose(item); });
}

void FaultList::Choose(const QTreeWidgetItem* item) {
    const int fault = item == nullptr ? kNoFault : item->data(kKind, Qt::UserRole).toInt();
    if (fault != kNoFault) {
        Q_EMIT Chosen(static_cast<std::size_t>(fault));
    }
}

void FaultList::AddFault(const lineup::CheckFault& fault) {
    const QString sentence = FaultSentence(QString::fromStdString(fault.text));
    auto* const item =
        new QTreeWidgetItem(this, {KindWords(fault), WhereWords(fault), MeasuredWords(fault), DueWords(fault),
                                   fault.at ? TimeWords(*fault.at) : QString(), sentence});
    item->setData(kKind, Qt::UserRole, topLevelItemCount() - 1);
    item->setToolTip(kWords, sentence);
}

void FaultList::AddNote(const lineup::CheckNote& note) {
    const QString sentence = FaultSentence(QString::fromStdString(note.text));
    auto* const item = new QTreeWidgetItem(this, {tr("Note"), {}, {}, {}, {}, sentence});
    item->setData(kKind, Qt::UserRole, kNoFault);
    item->setToolTip(kWords, sentence);
}

void FaultList::Show(const lineup::CheckReport& report) {
    const QSignalBlocker quiet(this);
    clear();
    for (const lineup::CheckFault& fault : report.faults) {
        AddFault(fault);
    }
    for (const lineup::CheckNote& note : report.notes) {
        AddNote(note);
    }
    for (int column = 0; column < kWords; ++column) {
        resizeColumnToContents(column);
    }
    Dress();
}

void FaultList::Dress() {
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = topLevelItem(row);
        if (item->data(kKind, Qt::UserRole).toInt() != kNoFault) {
            item->setForeground(kKind, Theme::Current().error);
        }
    }
}

void FaultList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        Dress();
    }
    QTreeWidget::changeEvent(event);
}

}  // namespace studio
