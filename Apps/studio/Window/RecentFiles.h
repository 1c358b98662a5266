#pragma once

#include <QMenu>
#include <QObject>
#include <QStringList>

namespace studio {

/// The documents that were last open, kept with the program's settings, as a menu.
class RecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int kMost = 10;

    explicit RecentFiles(QWidget* parent);

    [[nodiscard]] QMenu& Menu() noexcept { return *mMenu; }

    /// The latest first.
    [[nodiscard]] static QStringList Files();

    void Add(const QString& file);
    void Remove(const QString& file);

Q_SIGNALS:
    void Chosen(const QString& file);

private:
    void Keep(const QStringList& files);
    void Fill();

    QMenu* mMenu;
};

}  // namespace studio
