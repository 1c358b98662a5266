#pragma once

#include <lineup/CheckReport.h>
#include <lineup/Importer.h>

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <thread>

namespace studio {

/// The check of one recording in a thread of its own. Its signals come in the thread of the object. Destroying it stops
/// the check, and waits for that.
class CheckJob : public QObject {
    Q_OBJECT

public:
    CheckJob(QString file, std::shared_ptr<const lineup::Importer> importer, QObject* parent = nullptr);
    ~CheckJob() override;

    /// Starts it. Once.
    void Start();

    /// Asks it to stop; Cancelled follows, unless it was done already.
    void Cancel() noexcept { mCancel.store(true); }

    [[nodiscard]] const QString& File() const noexcept { return mFile; }

    /// How far it is, from 0 to 1; below 0 while that is not known.
    [[nodiscard]] double Share() const noexcept { return mShare.load(); }

Q_SIGNALS:
    // One of these, once, last.
    void Finished(const std::shared_ptr<const lineup::CheckReport>& report);
    void Cancelled();
    void Failed(const QString& problem);

private:
    void Run();

    QString mFile;
    std::shared_ptr<const lineup::Importer> mImporter;
    std::atomic<bool> mCancel{false};
    std::atomic<double> mShare{-1};
    std::jthread mThread;
};

}  // namespace studio
