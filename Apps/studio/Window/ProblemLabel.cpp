#include "Apps/studio/Window/ProblemLabel.h"

#include "Apps/studio/Window/Theme.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QStyle>

namespace studio {

namespace {

constexpr int kSignSize = 20;

}  // namespace

ProblemLabel::ProblemLabel(const char* name, QWidget* parent)
    : QWidget(parent), mSign(new QLabel(this)), mText(new QLabel(this)) {
    mText->setObjectName(name);
    mText->setWordWrap(true);
    mText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mText->setMinimumHeight(2 * fontMetrics().lineSpacing());
    mSign->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(kSignSize, kSignSize));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mSign, 0, Qt::AlignVCenter);
    layout->addWidget(mText, 1);
    Show({});
    Dress();
}

void ProblemLabel::Show(const QString& problem) {
    const bool isNews = problem != mText->text() && !problem.isEmpty();
    mText->setText(problem);
    mSign->setVisible(!problem.isEmpty());
    if (isNews) {
        QAccessibleEvent alert(mText, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void ProblemLabel::Dress() {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, Theme::Current().error);
    mText->setPalette(colours);
}

void ProblemLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        Dress();
    }
    QWidget::changeEvent(event);
}

}  // namespace studio
