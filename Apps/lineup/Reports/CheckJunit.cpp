#include "Apps/lineup/Reports/CheckJunit.h"

#include "Apps/lineup/Reports/CheckTable.h"
#include "Apps/lineup/Reports/Markup.h"

#include <fmt/format.h>

#include <string_view>

namespace cli {

namespace {

using lineup::CheckPart;
using lineup::CheckReport;
using lineup::CheckVerdict;

struct Suite {
    int cases = 0;
    int failures = 0;
    int errors = 0;
    std::string text;
};

// The parts of a recording that were looked at.
bool WasLookedFor(const CheckReport& report, CheckPart part) {
    const bool needsSound = part == CheckPart::Sound || part == CheckPart::Both;
    const bool needsPicture = part == CheckPart::Picture || part == CheckPart::Both;
    return (!needsSound || report.sound) && (!needsPicture || report.picture);
}

void AddKind(const CheckReport& report, const lineup::CheckFaultKind& kind, Suite& suite) {
    const std::string failures = [&] {
        std::string text;
        for (const lineup::CheckFault& fault : report.faults) {
            if (fault.id == kind.id && fault.part == kind.part) {
                text += (text.empty() ? "" : "\n") + fault.text;
            }
        }
        return text;
    }();
    ++suite.cases;
    const std::string_view part = lineup::CheckPartName(kind.part);
    suite.text += fmt::format("    <testcase classname=\"lineup.check.{}\" name=\"{}\"", part, kind.id);
    if (failures.empty()) {
        suite.text += "/>\n";
        return;
    }
    ++suite.failures;
    suite.text += fmt::format(">\n      <failure type=\"{}\" message=\"{}\">{}</failure>\n    </testcase>\n", kind.id,
                              Escaped(kind.meaning), Escaped(failures));
}

std::string NotesText(const CheckReport& report) {
    std::string text;
    for (const lineup::CheckNote& note : report.notes) {
        text += fmt::format("{}: {}\n", note.id, note.text);
    }
    return text;
}

Suite MakeSuite(const CheckReport& report) {
    Suite suite;
    if (report.verdict == CheckVerdict::CannotTell) {
        suite.cases = suite.errors = 1;
        suite.text = fmt::format(
            "    <testcase classname=\"lineup.check\" name=\"line-up\">\n"
            "      <error type=\"cannot-tell\" message=\"{}\">{}</error>\n    </testcase>\n",
            Escaped(CheckHeading(report)), Escaped(NotesText(report)));
        return suite;
    }
    for (const lineup::CheckFaultKind& kind : lineup::CheckFaultKinds()) {
        if (WasLookedFor(report, kind.part)) {
            AddKind(report, kind, suite);
        }
    }
    if (!report.notes.empty()) {
        suite.text += fmt::format("    <system-out>{}</system-out>\n", Escaped(NotesText(report)));
    }
    return suite;
}

}  // namespace

std::string CheckJunit(std::span<const CheckReport> reports) {
    Suite all;
    for (const CheckReport& report : reports) {
        const Suite suite = MakeSuite(report);
        all.cases += suite.cases;
        all.failures += suite.failures;
        all.errors += suite.errors;
        all.text +=
            fmt::format("  <testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" errors=\"{}\">\n{}  </testsuite>\n",
                        Escaped(report.source), suite.cases, suite.failures, suite.errors, suite.text);
    }
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<testsuites name=\"lineup check\" tests=\"{}\" failures=\"{}\" errors=\"{}\">\n{}</testsuites>\n",
        all.cases, all.failures, all.errors, all.text);
}

}  // namespace cli
