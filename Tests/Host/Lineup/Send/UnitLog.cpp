#include "Tests/Host/Lineup/Send/UnitLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace test {

void UnitLog::Complain(const std::string& text) {
    constexpr std::size_t kSaid = 10;
    ++errors;
    if (firstErrors.size() < kSaid) {
        firstErrors.push_back(text);
    }
}

void UnitLog::Take(int number, std::int64_t stamp, const std::string& content) {
    Lane& lane = mLanes.at(number);
    const char* const what = number == kPicture ? "picture" : "sound";
    if (lane.units > 0) {
        lane.step = lane.units == 1 ? stamp - lane.stamp : lane.step;
        if (std::abs(stamp - lane.stamp - lane.step) > lane.unevenness) {
            Complain(fmt::format("{} {}: its time stamp is {} behind the last, not {}", what, lane.units,
                                 stamp - lane.stamp, lane.step));
        }
    }
    lane.stamp = stamp;
    lane.last.push_back(content);
    if (lane.last.size() > lane.repeats) {
        if (lane.last.front() != content) {
            Complain(fmt::format("{} {}: it is not that of the cycle before", what, lane.units));
        }
        lane.last.pop_front();
    }
    ++lane.units;
}

void UnitLog::ReadFrameCrc(std::istream& text) {
    for (std::string line; std::getline(text, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::ranges::replace(line, ',', ' ');
        std::istringstream words(line);
        int stream = 0;
        std::int64_t decoding = 0;
        std::int64_t stamp = 0;
        std::int64_t duration = 0;
        std::string size;
        std::string content;
        words >> stream >> decoding >> stamp >> duration >> size >> content;
        Take(stream == 0 ? kPicture : kSound, stamp, size + ' ' + content);
    }
}

void UnitLog::ReadChecksums(std::istream& text) {
    constexpr std::size_t kDigitsOfPictures = 32;
    constexpr std::int64_t kNsASecond = 1'000'000'000;
    for (std::string line; std::getline(text, line);) {
        std::ranges::replace(line, ':', ' ');
        std::ranges::replace(line, '.', ' ');
        std::istringstream words(line);
        std::int64_t hours = 0;
        std::int64_t minutes = 0;
        std::int64_t seconds = 0;
        std::int64_t ns = 0;
        std::string content;
        if (words >> hours >> minutes >> seconds >> ns >> content) {
            Take(content.size() == kDigitsOfPictures ? kPicture : kSound,
                 ((hours * 60 + minutes) * 60 + seconds) * kNsASecond + ns, content);
        }
    }
}

}  // namespace test
