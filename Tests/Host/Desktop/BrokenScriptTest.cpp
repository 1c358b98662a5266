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

}  // namespace
