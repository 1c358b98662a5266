#include "Apps/studio/Check/CheckHeader.h"

#include "Apps/studio/Check/CheckWords.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

namespace studio {

namespace {

constexpr double kVerdictSize = 1.25;  // of the window's text
constexpr int kHeaderButtonRoom = 14;

}  // namespace

CheckHeader::CheckHeader(const std::vector<QAction*>& commands, QWidget* parent)
    : QWidget(parent), mVerdict(new ElidedLabel(this)), mFound(new ElidedLabel(this)), mCodes(new ElidedLabel(this)) {
    mVerdict->setObjectName("verdict");
    mFound->setObjectName("found");
    mCodes->setObjectName("codes");
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * kVerdictSize);
    large.setBold(true);
    mVerdict->setFont(large);
    auto* const words = new QVBoxLayout;
    words->setSpacing(1);
    for (ElidedLabel* const label : {mVerdict, mFound, mCodes}) {
        label->setTextFormat(Qt::PlainText);
        words->addWidget(label);
    }
    mFound->setForegroundRole(QPalette::PlaceholderText);
    mCodes->setForegroundRole(QPalette::PlaceholderText);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 10, 8);
    layout->addLayout(words, 1);
    for (QAction* const command : commands) {
        auto* const button = new QToolButton(this);
        button->setObjectName(command->objectName() + "Button");
        button->setDefaultAction(command);
        button->setAutoRaise(false);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setText(command->text().remove('&'));
        button->setMinimumSize(button->sizeHint() + QSize(kHeaderButtonRoom, 4));
        layout->addWidget(button);
    }
}

void CheckHeader::Show(const QString& file, const lineup::CheckReport& report) {
    mVerdict->setText(QFileInfo(file).fileName() + ": " + VerdictWords(report));
    mFound->setText(FoundWords(report));
    mCodes->setText(CodesWords(report));
    mCodes->setVisible(!mCodes->text().isEmpty());
}

}  // namespace studio
