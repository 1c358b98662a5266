#include <lineup/services/LocalizerSetup.h>
#include "Tests/Host/Desktop/OpenDialog.h"
#include "Tests/Host/Desktop/TestForms.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QKeySequence>
#include <QLabel>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>

namespace {

using test::ClipWith;
using test::DialogHands;
using test::EditWith;

constexpr std::array<const char*, 4> kLanguages = {"de", "es", "fr", "ja"};
constexpr std::array<const char*, 2> kForms = {"ToneSettingsDialog", "ToneSettingsWithIdentifiersDialog"};

/// The language of texts while it lives.
class Language {
public:
    explicit Language(const char* name) { zelcore::config::SetLanguage(name); }
    ~Language() { zelcore::config::SetLanguage("C"); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
};

QString ReadResource(const QString& name) {
    QFile file(QString(TEST_SOURCE_DIR "/Resources/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

TEST(Languages, TheDialogSpeaksEach) {
    struct Texts {
        const char* language;
        const char* title;
        const char* level;
        const char* cancel;
        const char* secondSequence;
    };
    constexpr std::array<Texts, 4> kTexts = {{
        {"de", "Toneinstellungen", "&Pegel:", "A&bbrechen", "EBU Stereo (400 Hz)"},
        {"es", "Ajustes del tono", "&Nivel:", "&Cancelar", "UER estéreo (400 Hz)"},
        {"fr", "Réglages de la tonalité", "&Niveau :", "&Annuler", "UER stéréo (400 Hz)"},
        {"ja", "トーン設定", "レベル(&L):", "キャンセル(&C)", "EBU ステレオ (400 Hz)"},
    }};
    for (const Texts& texts : kTexts) {
        const Language language(texts.language);
        (void)EditWith(ClipWith(2), [&](DialogHands& hands) {
            EXPECT_EQ(hands.Dialog().windowTitle(), texts.title);
            EXPECT_EQ(hands.Find<QLabel>("amplitudeLabel").text(), texts.level);
            EXPECT_EQ(hands.Find<QAbstractButton>("cancelButton").text(), texts.cancel);
            EXPECT_EQ(hands.Find<QComboBox>("identifierFormatPopup").itemText(1), texts.secondSequence);
            hands.ClickCloseBox();
        });
    }
}

TEST(Languages, NoTextIsLeftAsAKey) {
    (void)EditWith(ClipWith(6), [](DialogHands& hands) {
        for (const QWidget* const widget : hands.Dialog().findChildren<QWidget*>()) {
            EXPECT_FALSE(widget->toolTip().contains("$$$"));
            EXPECT_FALSE(widget->property("text").toString().contains("$$$"));
        }
        hands.ClickCloseBox();
    });
}

// Whichever of its properties it is: the format of a progress bar is the last.
TEST(Languages, EveryKeyThatAFormMayHoldIsLookedUp) {
    const auto view = test::Build(test::Form(R"(
        <property name="windowTitle"><string>$$$/Test=title</string></property>
        <layout class="QVBoxLayout" name="rows">
            <item><widget class="QProgressBar" name="progress">
                <property name="toolTip"><string>$$$/Test=tip</string></property>
                <property name="format"><string>$$$/Test=format</string></property>
            </widget></item>
            <item><widget class="QComboBox" name="list">
                <item><property name="text"><string>$$$/Test=first</string></property></item>
                <item><property name="text"><string>second</string></property></item>
                <item><property name="text"><string>$$$/Test=third</string></property></item>
            </widget></item>
        </layout>)"));
    const QWidgetList windows = QApplication::topLevelWidgets();
    const QWidget* const dialog = *std::ranges::find(windows, "Test", &QWidget::objectName);
    const auto& progress = *dialog->findChild<QProgressBar*>();
    const auto& list = *dialog->findChild<QComboBox*>();
    const QStringList texts = {dialog->windowTitle(), progress.toolTip(), progress.format(),
                               list.itemText(0),      list.itemText(1),   list.itemText(2)};
    EXPECT_EQ(texts.join(", ").toStdString(), "title, tip, format, first, second, third");
}

TEST(Languages, EveryTextOfTheFormsIsTranslated) {
    const QRegularExpression key(R"(\$\$\$/[^<]*)");
    int keys = 0;
    for (const char* const form : kForms) {
        const QString text = ReadResource(QString("%1.tarn").arg(form)).replace("&amp;", "&");
        for (auto matches = key.globalMatch(text); matches.hasNext(); ++keys) {
            const QString msgid = "msgid \"" + matches.next().captured() + "\"\nmsgstr \"";
            for (const char* const language : kLanguages) {
                const QString catalogue = ReadResource(QString("locale/%1.po").arg(language));
                EXPECT_TRUE(catalogue.contains(msgid) && !catalogue.contains(msgid + "\""))
                    << language << ": " << msgid.toStdString();
            }
        }
    }
    EXPECT_GT(keys, 15);
}

TEST(Languages, MnemonicsAreUniqueInEach) {
    for (const char* const name : {"C", "de", "es", "fr", "ja"}) {
        const Language language(name);
        (void)EditWith(ClipWith(2), [&](DialogHands& hands) {
            QSet<QString> seen;
            for (QWidget* const widget : hands.Dialog().findChildren<QWidget*>()) {
                const QKeySequence mnemonic = QKeySequence::mnemonic(widget->property("text").toString());
                if (!mnemonic.isEmpty()) {
                    EXPECT_FALSE(seen.contains(mnemonic.toString())) << name << ": " << qPrintable(mnemonic.toString());
                    seen.insert(mnemonic.toString());
                }
            }
            EXPECT_EQ(seen.size(), 7) << name;  // two kinds, three values, two buttons
            hands.ClickCloseBox();
        });
    }
}

}  // namespace
