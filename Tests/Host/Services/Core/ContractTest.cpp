#include <lineup/services/ContractReporter.h>
#include "Host/Interface/Core/Contract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::HasSubstr;
using zelcore::debug::BreakAfterContractDialog;
using zelcore::debug::ContractReport;
using zelcore::debug::SetContractReporter;

TEST(ContractReporter, PrintsTheWholeReportAtFirstAndAsksForNothing) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(BreakAfterContractDialog("view != NULL", "SomeDialog", "void SomeDialog::Show()", 123));
    const std::string printed = testing::internal::GetCapturedStderr();
    for (const char* const part : {"view != NULL", "SomeDialog", "void SomeDialog::Show()", "123"}) {
        EXPECT_THAT(printed, HasSubstr(part));
    }
}

TEST(ContractReporter, OfTheHostGetsTheReportAndDecides) {
    for (const bool answer : {false, true}) {
        int calls = 0;
        SetContractReporter([&](const ContractReport& report) {
            ++calls;
            EXPECT_STREQ(report.condition, "a");
            EXPECT_STREQ(report.file, "b");
            EXPECT_STREQ(report.function, "c");
            EXPECT_EQ(report.line, 4);
            return answer;
        });
        EXPECT_EQ(BreakAfterContractDialog("a", "b", "c", 4), answer);
        EXPECT_EQ(calls, 1);
    }
    SetContractReporter({});
}

TEST(ContractReporter, IsHandedBackByTheNextAndEmptyStandsForTheFirst) {
    EXPECT_FALSE(SetContractReporter([](const ContractReport&) { return true; }));
    const auto before = SetContractReporter({});
    ASSERT_TRUE(before);
    EXPECT_TRUE(before(ContractReport{"a", "b", "c", 4}));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(BreakAfterContractDialog("a", "b", "c", 4));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("a"));
}

TEST(ContractReporter, MayReportAViolationOfItsOwn) {
    int calls = 0;
    SetContractReporter([&](const ContractReport& report) {
        return ++calls == 1 ? BreakAfterContractDialog(report.condition, "", "", 0) : true;
    });
    EXPECT_TRUE(BreakAfterContractDialog("a", "b", "c", 4));
    EXPECT_EQ(calls, 2);
    SetContractReporter({});
}
