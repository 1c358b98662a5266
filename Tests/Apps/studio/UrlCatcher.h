#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace test {

/// Takes the file addresses that the program wants the desktop to open.
class UrlCatcher : public QObject {
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler("file", this, "Take"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler("file"); }

    [[nodiscard]] const QUrl& Last() const { return mLast; }

    Q_INVOKABLE void Take(const QUrl& url) { mLast = url; }

private:
    QUrl mLast;
};

}  // namespace test
