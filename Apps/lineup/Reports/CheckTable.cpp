#include "Apps/lineup/Reports/CheckTable.h"

#include <lineup/Idents.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace cli {

namespace {

using lineup::ChannelReport;
using lineup::CheckReport;

// Without the sign of a zero that was rounded away.
std::string Number(const std::optional<double>& value, int digits) {
    if (!value) {
        return "";
    }
    const double scale = std::pow(10.0, digits);
    const double rounded = std::round(*value * scale) / scale;
    return fmt::format("{:.{}f}", rounded == 0 ? 0.0 : rounded, digits);
}

std::string Polarity(const std::optional<int>& polarity) {
    return !polarity ? "" : *polarity < 0 ? "-" : "+";
}

struct Column {
    CheckColumn head;
    bool isBasic;
    std::string (*text)(const ChannelReport& channel);
};

const std::vector<Column>& AllColumns() {
    static const std::vector<Column> columns = {
        {{.name = "input", .unit = ""}, true, [](const ChannelReport& c) { return std::to_string(c.input + 1); }},
        {{.name = "channel", .unit = ""}, true, [](const ChannelReport& c) { return c.channel.value_or("-"); }},
        {{.name = "polarity", .unit = ""}, true, [](const ChannelReport& c) { return Polarity(c.polarity); }},
        {{.name = "level", .unit = "dB", .isNumber = true},
         true,
         [](const ChannelReport& c) { return Number(c.level, 2); }},
        {{.name = "gain", .unit = "dB", .isNumber = true},
         true,
         [](const ChannelReport& c) { return Number(c.gain, 2); }},
        {{.name = "delay", .unit = "", .isNumber = true},
         true,
         [](const ChannelReport& c) { return Number(c.delay, 2); }},
        {{.name = "noise", .unit = "dB", .isNumber = true},
         true,
         [](const ChannelReport& c) { return Number(c.noise, 0); }},
        {{.name = "distortion", .unit = "dB", .isNumber = true},
         false,
         [](const ChannelReport& c) { return Number(c.distortion, 0); }},
        {{.name = "offset", .unit = "", .isNumber = true},
         false,
         [](const ChannelReport& c) { return Number(c.dc, 5); }},
        {{.name = "bits", .unit = "", .isNumber = true},
         false,
         [](const ChannelReport& c) { return c.effectiveBits ? std::to_string(*c.effectiveBits) : ""; }},
    };
    return columns;
}

// What is wrong with one input, by the meaning of each fault that names it.
std::string Remark(const CheckReport& report, int input) {
    std::string text;
    for (const lineup::CheckFault& fault : report.faults) {
        if (std::ranges::find(fault.inputs, input) == fault.inputs.end()) {
            continue;
        }
        const lineup::CheckFaultKind* const kind = lineup::FindCheckFaultKind(fault.id, fault.part);
        text += (text.empty() ? "" : ", ") + (kind != nullptr ? std::string(kind->meaning) : fault.id);
    }
    return text;
}

std::string RateText(double rate) {
    return rate >= 1000 ? fmt::format("{:g} kHz", rate / 1000) : fmt::format("{:g} Hz", rate);
}

std::string CyclesText(double cycles) {
    const double rounded = std::round(cycles * 10) / 10;
    return fmt::format("{:g} {}", rounded, rounded == 1 ? "cycle" : "cycles");
}

std::string LineupName(const std::string& expected) {
    const lineup::Ident* const ident = lineup::FindIdent(expected);
    return ident != nullptr ? std::string(ident->title) : expected == "tone" ? "steady tone" : expected;
}

}  // namespace

std::string PlaceText(double seconds) {
    const auto milliseconds = std::llround(seconds * 1000);
    const auto minutes = milliseconds / 60000;
    const double rest = static_cast<double>(milliseconds % 60000) / 1000;
    return minutes < 60 ? fmt::format("{}:{:06.3f}", minutes, rest)
                        : fmt::format("{}:{:02}:{:06.3f}", minutes / 60, minutes % 60, rest);
}

namespace {

std::string SoundHeading(const lineup::SoundReport& sound) {
    std::string text = LineupName(sound.expected);
    if (sound.startsAt) {
        text += fmt::format(", from {} on", PlaceText(*sound.startsAt));
    }
    if (sound.cycles) {
        text += ", " + CyclesText(*sound.cycles);
    }
    if (sound.sampleRate) {
        text += ", " + RateText(*sound.sampleRate);
    }
    return text;
}

// "HD card, 1920x1080, 10 bits, bt709, limited range"
std::string CardHeading(const lineup::PictureReport& picture) {
    return fmt::format("{} card, {}x{}, {} bits, {}, {} range", picture.card == "hd" ? "HD" : "SD", picture.width,
                       picture.height, picture.bits, picture.codes.matrix, picture.codes.range);
}

}  // namespace

std::string CheckHeading(const CheckReport& report) {
    const bool hasSound = report.sound && !report.sound->expected.empty();
    const bool hasCard = report.picture && !report.picture->card.empty();
    if (!hasSound && !hasCard) {
        return report.notes.empty() ? "no line-up was found" : report.notes.front().text;
    }
    return (hasSound ? SoundHeading(*report.sound) : "") + (hasSound && hasCard ? "; " : "") +
           (hasCard ? CardHeading(*report.picture) : "");
}
std::vector<lineup::CheckNote> FurtherNotes(const CheckReport& report) {
    std::vector<lineup::CheckNote> notes = report.notes;
    std::erase_if(notes, [heading = CheckHeading(report)](const auto& note) { return note.text == heading; });
    return notes;
}

std::string CheckOutcome(const CheckReport& report) {
    switch (report.verdict) {
        case lineup::CheckVerdict::Right:
            return "nothing wrong";
        case lineup::CheckVerdict::CannotTell:
            return "cannot tell";
        case lineup::CheckVerdict::Faults:
            break;
    }
    return fmt::format("{} {}", report.faults.size(), report.faults.size() == 1 ? "fault" : "faults");
}

CheckTable MakeCheckTable(const CheckReport& report, bool all) {
    CheckTable table;
    if (!report.sound) {
        return table;
    }
    for (const Column& column : AllColumns()) {
        if (all || column.isBasic) {
            table.columns.push_back(column.head);
        }
    }
    for (const ChannelReport& channel : report.sound->channels) {
        std::vector<std::string> row;
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            row.push_back(AllColumns()[c].text(channel));
        }
        table.rows.push_back(std::move(row));
        table.remarks.push_back(Remark(report, channel.input));
    }
    return table;
}

}  // namespace cli
