#include "Apps/studio/Check/CheckFoot.h"

#include <QHBoxLayout>
#include <algorithm>

namespace studio {

namespace {

constexpr int kBarSteps = 1000;

}  // namespace

CheckFoot::CheckFoot(QWidget* parent)
    : QWidget(parent),
      mText(new QLabel(this)),
      mProblem(new ProblemLabel("checkProblem", this)),
      mBar(new QProgressBar(this)),
      mCancel(new QPushButton(tr("&Cancel Check"), this)),
      mDismiss(new QPushButton(tr("&Dismiss"), this)) {
    setObjectName("checkFoot");
    mText->setObjectName("checkText");
    mText->setTextFormat(Qt::PlainText);
    mBar->setObjectName("checkBar");
    mBar->setAccessibleName(tr("Check progress"));
    mCancel->setObjectName("checkCancel");
    mDismiss->setObjectName("checkDismiss");
    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(mText, 1);
    layout->addWidget(mProblem, 1);
    layout->addWidget(mBar, 1);
    layout->addWidget(mCancel);
    layout->addWidget(mDismiss);
    connect(mCancel, &QPushButton::clicked, this, [this] {
        mCancel->setEnabled(false);
        Q_EMIT CancelWanted();
    });
    connect(mDismiss, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void CheckFoot::ShowOnly(std::initializer_list<QWidget*> widgets) {
    for (QWidget* const widget : std::initializer_list<QWidget*>{mText, mProblem, mBar, mCancel, mDismiss}) {
        widget->setVisible(std::ranges::find(widgets, widget) != widgets.end());
    }
    setVisible(widgets.size() > 0);
}

void CheckFoot::ShowRunning(const QString& text) {
    mText->setText(text);
    mCancel->setEnabled(true);
    ShowShare(-1);
    ShowOnly({mText, mBar, mCancel});
}

void CheckFoot::ShowShare(double share) {
    mBar->setRange(0, share < 0 ? 0 : kBarSteps);  // 0 to 0: busy, nobody knows for how long
    mBar->setValue(static_cast<int>(share * kBarSteps));
}

void CheckFoot::ShowEnded(const QString& text) {
    mText->setText(text);
    if (text.isEmpty()) {
        ShowOnly({});
    } else {
        ShowOnly({mText, mDismiss});
    }
}

void CheckFoot::ShowProblem(const QString& problem) {
    mProblem->Show(problem);
    ShowOnly({mProblem, mDismiss});
}

}  // namespace studio
