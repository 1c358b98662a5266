#include "Tests/Host/Desktop/TestForms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using test::BuildError;
using test::Form;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string Repeat(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

TEST(BrokenScript, AFormThatIsWholeBuilds) {
    EXPECT_EQ(BuildError(test::FormWithOneOfEach()), "no error");
}

TEST(BrokenScript, NothingAtAllIsSaid) {
    EXPECT_THAT(BuildError(""), AllOf(StartsWith("cannot build the dialog Test: line "), HasSubstr("end of document")));
}

TEST(BrokenScript, WhatIsCutShortIsSaidWithItsLine) {
    const std::string form = "\n\n" + test::FormWithOneOfEach();
    EXPECT_THAT(BuildError(form.substr(0, form.size() / 2)), HasSubstr("cannot build the dialog Test: line "));
}

TEST(BrokenScript, WhatIsNoXmlIsSaid) {
    EXPECT_THAT(BuildError(std::string("\0\x01\xFF\xFE bytes", 10)), HasSubstr("line 1"));
}

TEST(BrokenScript, XmlOfAnotherKindIsSaid) {
    EXPECT_THAT(BuildError("<html/>"), HasSubstr("a form begins with <ui>, not with <html>"));
}

TEST(BrokenScript, AFormThatIsNoDialogIsSaid) {
    EXPECT_THAT(BuildError(R"(<ui version="4.0"><widget class="QWidget" name="Test"/></ui>)"),
                HasSubstr("the outermost widget is a QWidget, not a QDialog"));
}

TEST(BrokenScript, AFormWithoutAnyWidgetIsSaid) {
    EXPECT_THAT(BuildError(R"(<ui version="4.0"></ui>)"), StartsWith("cannot build the dialog Test: "));
}

TEST(BrokenScript, AControlThatDoesNotExistIsSaidWithItsName) {
    EXPECT_THAT(BuildError(Form(R"(<widget class="Wheel" name="wheel"/>)")),
                HasSubstr("wheel is a Wheel, which does not exist"));
}

TEST(BrokenScript, ElementsTooDeepAreRefused) {
    const std::string deep = Repeat("<widget class=\"QWidget\" name=\"w\">", 70) + Repeat("</widget>", 70);
    EXPECT_THAT(BuildError(Form(deep)), HasSubstr("elements lie more than 64 deep"));
}

TEST(BrokenScript, TooManyElementsAreRefused) {
    EXPECT_THAT(BuildError(Form(Repeat("<a/>", 20001))), HasSubstr("more than 20000 elements"));
}

TEST(BrokenScript, AScriptTooLargeIsRefused) {
    EXPECT_THAT(BuildError(Form("<!--" + std::string(1 << 20, ' ') + "-->")),
                HasSubstr("are more than the 1048576 a form may have"));
}

TEST(BrokenScript, EntitiesCannotBlowItUp) {
    EXPECT_THAT(BuildError("<!DOCTYPE ui [<!ENTITY a \"aaaa\">]>" + Form("")),
                HasSubstr("a form has no document type"));
}

// A form whose grid holds a label at the place that `attributes` say.
std::string Grid(const std::string& attributes) {
    return Form(R"(<layout class="QGridLayout" name="grid"><item )" + attributes +
                R"(><widget class="QLabel" name="label"/></item></layout>)");
}

// A form whose table has a property of this value.
std::string Table(const std::string& property, const std::string& value) {
    return Form(R"(<widget class="QTableWidget" name="table"><property name=")" + property + R"("><number>)" + value +
                "</number></property></widget>");
}

TEST(BrokenScript, PlacesFarOutAreRefused) {
    EXPECT_EQ(BuildError(Grid(R"(row="1000" column="1000" rowspan="-1" colspan="1000")")), "no error");
    for (const std::string place : {"row", "column", "rowspan", "colspan"}) {
        // The least of them first: one that is let through ends the test before the large ones take memory.
        for (const std::string value : {"1001", "300000000", "-2", "99999999999", "one"}) {
            ASSERT_THAT(BuildError(Grid(place + "=\"" + value + "\"")),
                        HasSubstr(place + " is \"" + value + "\", not a number up to 1000"));
        }
    }
}

TEST(BrokenScript, TablesWithoutEndAreRefused) {
    EXPECT_EQ(BuildError(Table("rowCount", " 1000 ")), "no error");
    ASSERT_THAT(BuildError(Table("columnCount", "1001")), HasSubstr("columnCount is \"1001\""));
    ASSERT_THAT(BuildError(Table("rowCount", "2000000000")), HasSubstr("rowCount is \"2000000000\""));
    EXPECT_THAT(BuildError(Table("rowCount", "2000<!-- -->000000")), HasSubstr("rowCount is \"2000000000\""));
    EXPECT_THAT(BuildError(Form(R"(<WIDGET class="QTableWidget" name="table"><Property name="rowCount"><String>1001)"
                                "</String></Property></WIDGET>")),
                HasSubstr("rowCount is \"1001\""));
}

TEST(BrokenScript, AWidgetThatReadsOtherFilesIsRefused) {
    EXPECT_THAT(BuildError(Form(R"(<widget class="QTextBrowser" name="page"/>)")),
                HasSubstr("a form has no QTextBrowser, which reads other files"));
}

}  // namespace
