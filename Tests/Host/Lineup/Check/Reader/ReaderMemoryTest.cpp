// An hour takes no more memory than a minute, in neither of the two processes.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>

namespace {

constexpr std::uint32_t kRate = 8000;
constexpr std::uint32_t kBytesASecond = kRate * 2 * 2;

std::string Number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
    return text;
}

// A Wave file of two channels of silence, whose samples take no room on the disk.
void WriteSilence(const std::filesystem::path& file, std::uint32_t seconds) {
    const std::uint32_t bytes = seconds * kBytesASecond;
    test::WriteFile(file, "RIFF" + Number(36 + bytes, 4) + "WAVEfmt " + Number(16, 4) + Number(1, 2) + Number(2, 2) +
                              Number(kRate, 4) + Number(kBytesASecond, 4) + Number(4, 2) + Number(16, 2) + "data" +
                              Number(bytes, 4));
    std::filesystem::resize_file(file, std::uintmax_t{44} + bytes);
}

class ReaderMemory : public test::TestFolder {
protected:
    struct Peak {
        double reader = 0;
        double decoder = 0;
    };

    // Kilobytes, with the samples read made sure of.
    Peak PeakOf(const std::string& commandLine, std::uint32_t seconds) {
        const auto result = test::RunProgram(commandLine, Folder());
        EXPECT_NE(result.out.find("samples " + std::to_string(seconds * kRate) + "\n"), std::string::npos)
            << result.out;
        Peak peak;
        std::istringstream lines(result.out);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("kilobytes ")) {
                peak.reader = std::stod(line.substr(10));
            } else if (line.starts_with("decoder kilobytes ")) {
                peak.decoder = std::stod(line.substr(18));
            }
        }
        return peak;
    }

    void CompareHourWithMinute(const std::string& before, const std::string& after) {
        const Peak minute = PeakOf(before + (Folder() / "minute.wav").string() + after, 60);
        const Peak hour = PeakOf(before + (Folder() / "hour.wav").string() + after, 3600);
        EXPECT_GT(minute.reader, 0);
        EXPECT_LT(hour.reader, minute.reader * 1.1);
        EXPECT_LT(hour.decoder, minute.decoder * 1.1);
    }
};

TEST_F(ReaderMemory, OfAnHourIsThatOfAMinute) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers keep freed memory for a while";
#endif
    WriteSilence(Folder() / "minute.wav", 60);
    WriteSilence(Folder() / "hour.wav", 3600);
    CompareHourWithMinute(TEST_READ_RECORDING " ", "");
    CompareHourWithMinute("sh -c 'cat ", " | " TEST_READ_RECORDING " -'");
}

}  // namespace
