#pragma once

#include <QLabel>
#include <QWidget>

namespace studio {

/// What is wrong, with the sign of an error and in its colour; a screen reader is told when it changes. Its room stays
/// when nothing is wrong.
class ProblemLabel : public QWidget {
    Q_OBJECT

public:
    /// `name` is the text's object name.
    explicit ProblemLabel(const char* name, QWidget* parent = nullptr);

    /// Empty: nothing is wrong.
    void Show(const QString& problem);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Dress();

    QLabel* mSign;
    QLabel* mText;
};

}  // namespace studio
