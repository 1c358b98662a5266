#include "Apps/studio/Window/RecentFiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QWidget>

namespace studio {

namespace {

constexpr const char* kKey = "recentFiles";

}  // namespace

RecentFiles::RecentFiles(QWidget* parent) : QObject(parent), mMenu(new QMenu(tr("Open &Recent"), parent)) {
    mMenu->setObjectName("recent");
    connect(mMenu, &QMenu::aboutToShow, this, &RecentFiles::Fill);
    Fill();
}

QStringList RecentFiles::Files() {
    return QSettings().value(kKey).toStringList();
}

void RecentFiles::Keep(const QStringList& files) {
    QSettings().setValue(kKey, files.mid(0, kMost));
    Fill();
}

void RecentFiles::Add(const QString& file) {
    const QString path = QFileInfo(file).absoluteFilePath();
    QStringList files = Files();
    files.removeAll(path);
    files.prepend(path);
    Keep(files);
}

void RecentFiles::Remove(const QString& file) {
    QStringList files = Files();
    files.removeAll(QFileInfo(file).absoluteFilePath());
    Keep(files);
}

void RecentFiles::Fill() {
    mMenu->clear();
    int number = 0;
    for (const QString& file : Files()) {
        const QFileInfo info(file);
        QString name = info.fileName();
        name.replace('&', "&&");
        const QString key = ++number < 10 ? QString("&%1  ").arg(number) : QString();
        QAction* const action = mMenu->addAction(key + name + "  \u2014  " + info.absolutePath());
        connect(action, &QAction::triggered, this, [this, file] { Q_EMIT Chosen(file); });
    }
    mMenu->setEnabled(number > 0);
    if (number > 0) {
        mMenu->addSeparator();
        connect(mMenu->addAction(tr("&Clear")), &QAction::triggered, this, [this] { Keep({}); });
    }
}

}  // namespace studio
