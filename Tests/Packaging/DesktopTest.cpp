// What a desktop is told of Lineup Studio, as the desktop's own tools judge it.
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using test::kPrefix;
using testing::HasSubstr;
using testing::Not;

const std::string kApplication = "org.barsandtone.lineup_studio";
const std::string kDocumentType = "application/vnd.barsandtone.lineup+json";
constexpr const char* kDocument = R"({
  "kind": "lineup",
  "version": 1,
  "settings": "0100000000803b4702000000020000000000000000007a440000803e00000000",
  "picture": {"width": 1920, "height": 1080, "card": "auto", "frameRate": [25, 1]},
  "lengthFrames": 125
}
)";

class Desktop : public test::InFolder {
protected:
    [[nodiscard]] static fs::path Shared(const std::string& path) { return kPrefix / "share" / path; }
    [[nodiscard]] static std::string Quoted(const fs::path& path) { return "'" + path.string() + "'"; }

    // The type of a file as a desktop sees it that has the prefix beside the system's own folders.
    [[nodiscard]] std::string TypeOf(const std::string& file) const {
        return Output(
            "XDG_DATA_HOME=\"$PWD/home\" XDG_DATA_DIRS=\"$PWD/data:/usr/share\" gio info -a "
            "standard::content-type " +
            file);
    }
    // A database of types from what is installed, beside the installed tree, which stays as it is.
    void MakeDatabase() const {
        fs::create_directories(Folder() / "data");
        fs::copy(Shared("mime"), Folder() / "data/mime", fs::copy_options::recursive);
        (void)Output("update-mime-database data/mime");
    }
};

TEST_F(Desktop, HasARightEntryForTheMenu) {
    const auto result = Run("desktop-file-validate " + Quoted(Shared("applications/" + kApplication + ".desktop")));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out + result.err, "");
}

TEST_F(Desktop, StartsAProgramThatIsInstalledAndTakesAFile) {
    const std::string entry = test::ReadFile(Shared("applications/" + kApplication + ".desktop"));
    EXPECT_THAT(entry, HasSubstr("\nExec=lineup-studio %f\n"));
    EXPECT_THAT(entry, HasSubstr("\nMimeType=" + kDocumentType + ";\n"));
    EXPECT_TRUE(fs::exists(kPrefix / "bin/lineup-studio"));
}

TEST_F(Desktop, HasARightDescriptionForSoftwareCentres) {
    const std::string file = Quoted(Shared("metainfo/" + kApplication + ".metainfo.xml"));
    (void)Output("xmllint --noout " + file);
    const auto result = Run("appstreamcli validate --no-net --no-color --pedantic --strict --explain " + file);
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    EXPECT_THAT(result.out, Not(HasSubstr("pedantic: "))) << result.out;
}

TEST_F(Desktop, KnowsADocumentByItsName) {
    ASSERT_NO_FATAL_FAILURE(MakeDatabase());
    (void)Output("xmllint --noout " + Quoted(Shared("mime/packages/" + kApplication + ".xml")));
    test::WriteFile(Folder() / "news.lineup", kDocument);
    EXPECT_THAT(TypeOf("news.lineup"), HasSubstr(kDocumentType + "\n"));
    test::WriteFile(Folder() / "tone.batn", std::string(32, '\1'));
    EXPECT_THAT(TypeOf("tone.batn"), HasSubstr("application/vnd.barsandtone.settings\n"));
}

TEST_F(Desktop, KnowsADocumentByItsContents) {
    ASSERT_NO_FATAL_FAILURE(MakeDatabase());
    test::WriteFile(Folder() / "unnamed", kDocument);
    EXPECT_THAT(TypeOf("unnamed"), HasSubstr(kDocumentType + "\n"));
    test::WriteFile(Folder() / "other", R"({"kind": "other", "version": 1})");
    EXPECT_THAT(TypeOf("other"), Not(HasSubstr("barsandtone")));
}

TEST_F(Desktop, TakesTheDocumentForOneOfTheProgram) {
    test::WriteFile(Folder() / "news.lineup", kDocument);
    // The settings are those of a new clip; the file is what the program itself reads.
    EXPECT_THAT(Output(Quoted(kPrefix / "bin/lineup") + " info --settings news.lineup"), HasSubstr("1000 Hz"));
}

TEST_F(Desktop, HasPicturesOfEveryIcon) {
    for (const std::string& icon :
         {"apps/" + kApplication, std::string("mimetypes/application-vnd.barsandtone.lineup+json")}) {
        (void)Output("xmllint --noout " + Quoted(Shared("icons/hicolor/scalable/" + icon + ".svg")));
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const std::string square = std::to_string(size) + "x" + std::to_string(size);
            const std::string file = Quoted(Shared("icons/hicolor/" + square + "/" + icon + ".png"));
            EXPECT_THAT(Output("file " + file),
                        HasSubstr("PNG image data, " + std::to_string(size) + " x " + std::to_string(size)));
        }
    }
}

TEST_F(Desktop, IsToldWhatIsWrong) {
    test::WriteFile(Folder() / "bad.desktop", "[Desktop Entry]\nType=Application\nExec=x\n");
    EXPECT_NE(Run("desktop-file-validate bad.desktop").exitCode, 0);
    test::WriteFile(Folder() / "bad.metainfo.xml", "<component type=\"desktop-application\"><id>x</id></component>");
    EXPECT_NE(Run("appstreamcli validate --no-net bad.metainfo.xml").exitCode, 0);
}

}  // namespace
