#pragma once

#include <lineup/Exporter.h>

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <thread>

namespace studio {

/// One export in a thread of its own. Its signals come in the thread of the object. Destroying it stops the
/// export, and waits for that; nothing of it is then left on disk.
class ExportJob : public QObject {
    Q_OBJECT

public:
    ExportJob(std::shared_ptr<const lineup::Clip> clip, lineup::ExportSettings settings, QObject* parent = nullptr);
    ~ExportJob() override;

    /// Starts it. Once.
    void Start();

    /// Asks it to stop; Cancelled follows, unless it was done already.
    void Cancel() noexcept { mCancel.store(true); }

    [[nodiscard]] const lineup::ExportSettings& Settings() const noexcept { return mSettings; }

    /// How far it is, from 0 to 1.
    [[nodiscard]] double Share() const noexcept { return mShare.load(); }

Q_SIGNALS:
    // One of these, once, last.
    void Finished(quint64 bytes);
    void Cancelled();
    void Failed(const QString& problem);

private:
    void Run();

    std::shared_ptr<const lineup::Clip> mClip;
    lineup::ExportSettings mSettings;
    std::atomic<bool> mCancel{false};
    std::atomic<double> mShare{0};
    std::jthread mThread;
};

}  // namespace studio
