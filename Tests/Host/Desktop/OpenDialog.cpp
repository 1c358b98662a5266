#include "Tests/Host/Desktop/OpenDialog.h"

#include <lineup/Importer.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <exception>

namespace test {

namespace {

constexpr int kLongestMs = 30000;

const lineup::Importer& DialogPlugin() {
    static const lineup::Importer plugin(TEST_BUNDLE);
    return plugin;
}

void Act(QDialog& dialog, const std::function<void(DialogHands&)>& act) {
    try {
        DialogHands hands(dialog);
        // A dialog counts as active as soon as its parent window is; the keys go to it a moment later.
        if (!QTest::qWaitFor([&dialog] { return QApplication::activeWindow() == &dialog; })) {
            ADD_FAILURE() << "the dialog never became the active window";
        }
        act(hands);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
    }
    if (dialog.isVisible()) {
        ADD_FAILURE() << "the dialog is still open";
        dialog.reject();
    }
}

}  // namespace

void WithDialog(const std::function<void()>& open, const std::function<void(DialogHands&)>& act) {
    bool acted = false;
    // A dialog may let events pass before it is there, and another one may be open already.
    const QWidget* const before = QApplication::activeModalWidget();
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, qApp, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog != nullptr && dialog != before) {
            look.stop();
            acted = true;
            Act(*dialog, act);
        }
    });
    look.start(0);
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, qApp, [] {
        ADD_FAILURE() << "the dialog stayed open";
        while (QWidget* const modal = QApplication::activeModalWidget()) {
            modal->close();
        }
    });
    watchdog.start(kLongestMs);
    open();
    EXPECT_TRUE(acted) << "no dialog was shown";
    QApplication::removePostedEvents(qApp, 0);
}

BarsAndToneInfo EditWith(BarsAndToneInfo settings, const std::function<void(DialogHands&)>& act) {
    WithDialog([&] { DialogPlugin().EditSettings(settings); }, act);
    return settings;
}

std::string Bytes(const BarsAndToneInfo& settings) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&settings);
    return testing::PrintToString(std::vector<unsigned>(bytes, bytes + sizeof settings));
}

BarsAndToneInfo ClipWith(std::uint32_t numChannels) {
    BarsAndToneInfo settings;
    settings.numChannels = numChannels;
    settings.channelType = ChannelTypeFor(numChannels);
    settings.identifierFormat = numChannels == 6 ? EBUMultichannel : EBUStereo1000;
    return settings;
}

}  // namespace test
