#pragma once

#include <QObject>
#include <QString>

namespace studio {

/// What pulls a playback and makes it heard, from its making to its end.
class SoundOutput : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Ends it before its destructor does. False: its device did not answer in time, and is left to itself. Nothing is
    /// emitted after that.
    virtual bool End() = 0;

Q_SIGNALS:
    /// It can go on no longer; `problem` is a sentence. Nothing is pulled any more.
    void Failed(const QString& problem);
};

}  // namespace studio
