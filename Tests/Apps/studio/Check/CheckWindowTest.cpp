#include <lineup/Check.h>
#include <lineup/services/LocalizerSetup.h>
#include "Apps/studio/Check/CheckWindow.h"
#include "Apps/studio/Check/CheckWords.h"
#include "Apps/studio/Check/FaultKindWords.h"
#include "Apps/studio/Text/CatalogueTranslator.h"
#include "Apps/studio/Window/Theme.h"
#include "Tests/Apps/studio/Check/Recordings.h"
#include "Tests/Apps/studio/StudioHands.h"
#include "Tests/Support/RunProgram.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using studio::CheckWindow;
using test::DialogHands;
using test::StudioTest;
using test::WaitFor;
using testing::HasSubstr;

constexpr QSize kSize{320, 180};

// A recording as it was sent and as it came, made once.
class Recordings {
public:
    Recordings() {
        test::RecordLineup(test::ThePlugin(), Sent(), kSize);
        test::DamageRecording(Sent(), Came(), kSize);
    }
    [[nodiscard]] QString Sent() const { return mFolder.filePath("sent.mov"); }
    [[nodiscard]] QString Came() const { return mFolder.filePath("came.mkv"); }

private:
    QTemporaryDir mFolder;
};

// A file that nothing ever arrives from.
class SilentPipe {
public:
    explicit SilentPipe(const std::string& file) {
        EXPECT_EQ(mkfifo(file.c_str(), 0600), 0);
        mEnd = open(file.c_str(), O_RDWR | O_CLOEXEC);
    }
    ~SilentPipe() { close(mEnd); }
    SilentPipe(const SilentPipe&) = delete;
    SilentPipe& operator=(const SilentPipe&) = delete;

private:
    int mEnd = -1;
};

// Crashes the decoders that this process has started, and says how many there were.
int EndDecoders() {
    int ended = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::istringstream children(test::ReadFile(task.path() / "children"));
        for (pid_t child = 0; children >> child;) {
            const bool isDecoder = test::ReadFile("/proc/" + std::to_string(child) + "/comm") == "lineup-decode\n";
            ended += isDecoder && kill(child, SIGSEGV) == 0 ? 1 : 0;
        }
    }
    return ended;
}

void Drop(QWidget& target, const QString& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter(QPoint(90, 90), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(90, 90), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
}

class CheckRecording : public StudioTest {
protected:
    static const Recordings& Files() {
        static const Recordings kFiles;
        return kFiles;
    }

    [[nodiscard]] CheckWindow& Checks() { return Find<CheckWindow>("checkWindow"); }
    template <class Widget = QWidget>
    [[nodiscard]] Widget& Part(const char* name) {
        auto* const part = Checks().findChild<Widget*>(name);
        if (part == nullptr) {
            throw std::runtime_error(std::string("the window of checks has no ") + name);
        }
        return *part;
    }
    [[nodiscard]] std::string Says(const char* label) { return Part<QLabel>(label).text().toStdString(); }

    // What is dropped is taken up once the drop is over.
    void DropOnStudio(const QString& file) {
        Drop(Window(), file);
        QCoreApplication::sendPostedEvents();
    }

    void DropAndWait(const QString& file) {
        DropOnStudio(file);
        WaitFor([&] { return !Checks().IsRunning(); }, "the check ends");
    }

    void ClickFault(const QString& kind) {
        auto& list = Part<studio::FaultList>("faults");
        const auto found = list.findItems(kind, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << kind.toStdString();
        list.scrollToItem(found.front());
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(found.front()).center());
    }

    [[nodiscard]] QColor MiddleOf(const char* picture) {
        auto& view = Part<studio::PictureView>(picture);
        WaitFor([&] { return !view.Frame().isEmpty(); }, "the picture comes");
        const QRectF frame = view.Frame();
        return view.grab().toImage().pixelColor(
            QPointF(frame.x() + frame.width() * 0.5, frame.y() + frame.height() * 0.3).toPoint());
    }
};

TEST_F(CheckRecording, FromTheMenuShowsWhatThePathDid) {
    PressFor(Qt::Key_K, Qt::ControlModifier, [&](DialogHands& hands) {
        hands.Find<QLineEdit>("fileNameEdit").setText(Files().Came());
        hands.Press(Qt::Key_Return);
    });
    WaitFor([&] { return !Checks().IsRunning(); }, "the check ends");
    EXPECT_THAT(Says("verdict"), HasSubstr("came.mkv: "));
    EXPECT_THAT(Says("found"), HasSubstr("48 kHz \u00B7 Inputs: 6 \u00B7 HD card \u00B7 320 \u00D7 180"));
    EXPECT_EQ(Says("codes"), "Codes: BT.709, limited range; the file says: BT.601, limited range");
    auto& list = Part<studio::FaultList>("faults");
    for (const char* const kind :
         {"Channels swapped", "Polarity inverted", "Dropout", "Wrong matrix", "Frames differ"}) {
        EXPECT_EQ(list.findItems(kind, Qt::MatchExactly).size(), 1) << kind;
    }
    EXPECT_FALSE(Part("checkFoot").isVisible());
    EXPECT_TRUE(Part("checkLanes").isVisible() && Part("checkMeters").isVisible());
    EXPECT_NE(MiddleOf("foundPicture"), MiddleOf("expectedPicture"));
}

// The same patches as every report has, and those alone are marked that are off.
TEST_F(CheckRecording, ThePatchTableHasFoundAndDueCodesInTheOrderOfTheCard) {
    DropAndWait(Files().Came());
    lineup::CheckSettings settings;
    settings.expect = "none";
    const auto report = lineup::Check(Files().Came().toStdString(), test::ThePlugin(), settings);
    ASSERT_TRUE(report.picture);
    const auto& patches = report.picture->patches;
    auto& table = Part<studio::PatchTable>("patches");
    ASSERT_TRUE(table.isVisible());
    ASSERT_EQ(table.rowCount(), static_cast<int>(patches.size()));
    auto* const accessible = QAccessible::queryAccessibleInterface(&table)->tableInterface();
    ASSERT_NE(accessible, nullptr);
    ASSERT_EQ(accessible->columnCount(), 8);
    int off = 0;
    for (int row = 0; row < table.rowCount(); ++row) {
        const auto& patch = patches[static_cast<std::size_t>(row)];
        const auto heard = [&](int column) {
            return accessible->cellAt(row, column)->text(QAccessible::Name).toStdString();
        };
        EXPECT_EQ(heard(0), patch.name);
        for (std::size_t code = 0; code < 3; ++code) {
            const int column = static_cast<int>(code) + 1;
            EXPECT_NEAR(std::stod(heard(column)), patch.measured[code], 0.0501) << patch.name;
            EXPECT_NEAR(std::stod(heard(column + 3)), patch.expected[code], 0.0501) << patch.name;
        }
        EXPECT_EQ(heard(7).empty(), !patch.isOff) << patch.name;
        EXPECT_EQ(table.item(row, 0)->foreground().color() == studio::Theme::Current().error, patch.isOff);
        off += patch.isOff ? 1 : 0;
    }
    EXPECT_GT(off, 5);
    EXPECT_LT(off, table.rowCount());
    table.setFocus();
    table.setCurrentCell(0, 0);
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_EQ(table.currentRow(), 1);
}

TEST_F(CheckRecording, AFaultThatIsChosenIsShownAtItsPlace) {
    DropAndWait(Files().Came());
    const QColor lit = MiddleOf("foundPicture");
    EXPECT_GT(lit.green(), 100);
    ClickFault("Frames differ");
    EXPECT_NEAR(Checks().Place(), 8, 0.01);
    WaitFor([&] { return MiddleOf("foundPicture").lightness() < 10; }, "the black frame comes");
    EXPECT_EQ(Says("foundTitle"), "Found at 0:08.000");
    ClickFault("Dropout");
    EXPECT_NEAR(Checks().Place(), 5, 0.01);
    WaitFor([&] { return MiddleOf("foundPicture") == lit; }, "the card comes back");
    EXPECT_THAT(Part("checkMeters").accessibleDescription().toStdString(), HasSubstr("C \u221260.00 dBFS"));
}

TEST_F(CheckRecording, WhatIsUnreadableIsSaidAndLeavesWhatWasFound) {
    DropAndWait(Files().Sent());
    EXPECT_EQ(Says("verdict"), "sent.mov: Nothing wrong");
    test::WriteFile(Folder() / "text.mov", "no recording");
    DropAndWait(InFolder("text.mov"));
    EXPECT_THAT(Says("checkProblem"), HasSubstr("text.mov: The recording cannot be read: "));
    EXPECT_TRUE(Part("checkProblem").isVisible());
    EXPECT_EQ(Says("verdict"), "sent.mov: Nothing wrong");
    QTest::mouseClick(&Part("checkDismiss"), Qt::LeftButton);
    EXPECT_FALSE(Part("checkFoot").isVisible());
}

TEST_F(CheckRecording, CancellingSaysSo) {
    const SilentPipe pipe((Folder() / "pipe.mov").string());
    DropOnStudio(InFolder("pipe.mov"));
    EXPECT_TRUE(Checks().IsRunning());
    EXPECT_TRUE(Part("checkBar").isVisible());
    QTest::mouseClick(&Part("checkCancel"), Qt::LeftButton);
    WaitFor([&] { return !Checks().IsRunning(); }, "the check stops");
    EXPECT_EQ(Says("checkText"), "Cancelled: pipe.mov was not checked");
    EXPECT_FALSE(Part("checkBar").isVisible());
}

TEST_F(CheckRecording, ADecoderThatCrashesIsSaid) {
    const SilentPipe pipe((Folder() / "pipe.mov").string());
    DropOnStudio(InFolder("pipe.mov"));
    WaitFor([] { return EndDecoders() > 0; }, "the decoder starts, and crashes");
    WaitFor([&] { return !Checks().IsRunning(); }, "the check ends");
    EXPECT_THAT(Says("checkProblem"), testing::AllOf(HasSubstr("pipe.mov: The recording cannot be read: "),
                                                     HasSubstr("it crashed (SIGSEGV")));
}

TEST_F(CheckRecording, WithoutALineUpShowsWhatThereIs) {
    const auto made = test::RunProgram("ffmpeg -v error -f lavfi -i testsrc=s=128x72:d=0.4 -f lavfi -i anoisesrc=d=1 " +
                                           InFolder("other.mkv").toStdString(),
                                       Folder());
    ASSERT_EQ(made.exitCode, 0) << made.err;
    DropAndWait(InFolder("other.mkv"));
    EXPECT_EQ(Says("verdict"), "other.mkv: No line-up found");
    EXPECT_THAT(Says("found"),
                testing::AllOf(HasSubstr("No line-up in the sound"), HasSubstr("No card in the picture")));
    EXPECT_NE(MiddleOf("foundPicture"), QColor(Qt::black));
    EXPECT_FALSE(Part("expectedPicture").isVisible() || Part("patches").isVisible());
    EXPECT_GT(Part<studio::FaultList>("faults").topLevelItemCount(), 0);  // why
}

TEST_F(CheckRecording, PlaysWithPictureAndMetersFromThePlaceThatIsShown) {
    DropAndWait(Files().Came());
    ClickFault("Dropout");
    WaitFor([&] { return Says("foundTitle") == "Found at 0:05.000"; }, "the picture comes");
    const auto meters = [&] { return Part("checkMeters").accessibleDescription().toStdString(); };
    EXPECT_THAT(meters(), HasSubstr("C \u221260.00 dBFS"));
    Window().Sound().Play();
    QTest::keyClick(&Checks(), Qt::Key_Space);
    EXPECT_FALSE(Window().Sound().IsPlaying());  // one at a time
    EXPECT_EQ(Part<QAbstractButton>("checkPlayButton").text(), "Pause");
    WaitFor([&] { return Checks().Place() > 5.6 && Says("foundTitle") > "Found at 0:05.3"; }, "it plays");
    WaitFor([&] { return meters().find("C \u221260.00 dBFS") == std::string::npos; }, "C sounds behind the dropout");
    ClickFault("Frames differ");
    WaitFor([&] { return Checks().Place() > 8.1; }, "it plays on from the fault");
    QTest::mouseClick(&Part("checkPlayButton"), Qt::LeftButton);
    const double place = Checks().Place();
    EXPECT_EQ(Part<QAbstractButton>("checkPlayButton").text(), "Play");
    WaitFor(
        [&] {
            return MiddleOf("foundPicture") == MiddleOf("expectedPicture") || Says("foundTitle") > "Found at 0:08.1";
        },
        "the picture of that place");
    EXPECT_EQ(Checks().Place(), place);
}

TEST_F(CheckRecording, KeysChooseFaultsScopesAndTimes) {
    DropAndWait(Files().Came());
    auto& list = Part<studio::FaultList>("faults");
    list.setFocus();
    // Where the decoder cannot be confined, as under a sanitizer, a note of that stands behind the last fault.
    QTest::keyClick(&list, Qt::Key_Home);
    for (int row = 1; row < list.topLevelItemCount() && Checks().Place() < 7.9; ++row) {
        QTest::keyClick(&list, Qt::Key_Down);
    }
    EXPECT_NEAR(Checks().Place(), 8, 0.01);
    EXPECT_TRUE(Part("scope").isVisible() && Part("vectorscope").isVisible());
    EXPECT_FALSE(Part("parade").isVisible());
    QTest::keyClick(&Checks(), Qt::Key_R);
    QTest::keyClick(&Checks(), Qt::Key_W);
    EXPECT_TRUE(Part("parade").isVisible());
    EXPECT_FALSE(Part("scope").isVisible());
    EXPECT_TRUE(Part<QAbstractButton>("checkParadeButton").isChecked());
    auto& lanes = Part<studio::LanesView>("checkLanes");
    const double whole = lanes.Span().Visible();
    QTest::keyClick(&Checks(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_LT(lanes.Span().Visible(), whole);
    QTest::keyClick(&Checks(), Qt::Key_0, Qt::ControlModifier);
    const QPoint middle(static_cast<int>(lanes.X(lanes.Span().Length() / 2)), lanes.height() / 2);
    QTest::mouseClick(&lanes, Qt::LeftButton, {}, middle);
    EXPECT_NEAR(Checks().Place(), 7, 0.1);
}

TEST_F(CheckRecording, ASecondOneTakesThePlaceOfTheFirst) {
    const SilentPipe pipe((Folder() / "pipe.mov").string());
    DropOnStudio(InFolder("pipe.mov"));
    Drop(Checks(), Files().Sent());
    WaitFor([&] { return !Checks().IsRunning(); }, "both have ended");
    EXPECT_EQ(Says("verdict"), "sent.mov: Nothing wrong");
    EXPECT_FALSE(Part("checkFoot").isVisible());
    DropAndWait(Files().Came());
    EXPECT_THAT(Says("verdict"), HasSubstr("came.mkv: "));
}

TEST_F(CheckRecording, StopsWhenItsWindowOrTheStudioIsClosed) {
    const SilentPipe pipe((Folder() / "pipe.mov").string());
    DropOnStudio(InFolder("pipe.mov"));
    Checks().close();
    WaitFor([&] { return !Checks().IsRunning(); }, "the check stops");
    DropOnStudio(InFolder("pipe.mov"));
    EXPECT_TRUE(Checks().IsRunning());
    EXPECT_TRUE(CloseWindow());
    EXPECT_FALSE(Checks().isVisible());
    DestroyWindow();
}

TEST_F(CheckRecording, WhatCanHaveTheFocusHasAnAccessibleName) {
    DropAndWait(Files().Came());
    for (QWidget* const widget : Checks().findChildren<QWidget*>()) {
        if (widget->focusPolicy() != Qt::NoFocus && widget->isVisible()) {
            const auto* const interface = QAccessible::queryAccessibleInterface(widget);
            EXPECT_FALSE(interface == nullptr || interface->text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        }
    }
}

TEST_F(CheckRecording, SpeaksTheLanguageInUse) {
    studio::CatalogueTranslator texts;
    zelcore::config::SetLanguage("de");
    QCoreApplication::installTranslator(&texts);
    OpenWindow();
    DropAndWait(Files().Came());
    EXPECT_EQ(Says("codes"), "Werte: BT.709, begrenzter Bereich; die Datei sagt: BT.601, begrenzter Bereich");
    auto& list = Part<studio::FaultList>("faults");
    const auto said = [&](const char* kind) {
        const auto rows = list.findItems(kind, Qt::MatchExactly);
        return rows.empty() ? std::string() : rows.front()->text(list.columnCount() - 1).toStdString();
    };
    EXPECT_EQ(said("Kan\u00E4le vertauscht"), "L und R sind vertauscht (Eing\u00E4nge 1 und 2).");
    EXPECT_EQ(said("Polarit\u00E4t verkehrt"), "Ls (Eingang 5) ist verpolt.");
    EXPECT_EQ(said("Falsche Matrix"), "Die Werte sind die von BT.709, wo BT.601 sein muss.");
    auto& patches = Part<studio::PatchTable>("patches");
    EXPECT_EQ(patches.horizontalHeaderItem(7)->text(), "Abweichung");
    EXPECT_FALSE(patches.findItems("75 % Gelb", Qt::MatchExactly).empty());
    EXPECT_FALSE(patches.findItems("schwarz 2", Qt::MatchExactly).empty());
    EXPECT_EQ(said("Abweichende Bilder"), "1 von 70 betrachteten Bildern ist schwarz, das erste bei 8.000 s.");
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
        const QString words = list.topLevelItem(row)->text(list.columnCount() - 1);
        EXPECT_FALSE(words.contains("The ") || words.contains(" are ") || words.contains(" is ") ||
                     words.contains("What "))
            << qPrintable(words);
    }
    lineup::CheckReport notes;
    notes.notes = {{"not-confined", lineup::CheckPart::Sound,
                    "The recording was decoded with rights that decoding does not need: files are not out of reach "
                    "(Landlock), memory has no limit."}};
    lineup::CheckFault bands;
    bands.id = "bits-truncated";
    bands.part = lineup::CheckPart::Picture;
    bands.text = "The ramp has bands: 64 codes, where 8 bits have 219 in the same place.";
    notes.faults = {bands};
    list.Show(notes);
    EXPECT_EQ(list.topLevelItem(0)->text(list.columnCount() - 1).toStdString(),
              "Die Rampe hat Stufen: 64 Werte, wo 8 Bit an derselben Stelle 219 haben.");
    EXPECT_EQ(said("Hinweis"),
              "Die Aufnahme wurde mit Rechten dekodiert, die das Dekodieren nicht braucht: Dateien sind nicht "
              "unerreichbar (Landlock), der Speicher hat keine Grenze.");
    zelcore::config::SetLanguage("C");
    QCoreApplication::removeTranslator(&texts);
}

TEST(FaultKinds, EachHasItsWords) {
    EXPECT_EQ(studio::FaultKindTable().size(), lineup::CheckFaultKinds().size());
    for (const lineup::CheckFaultKind& kind : lineup::CheckFaultKinds()) {
        lineup::CheckFault fault;
        fault.id = kind.id;
        fault.part = kind.part;
        EXPECT_NE(studio::KindWords(fault).toStdString(), kind.id);
    }
}

}  // namespace
