#include "Host/Lineup/Check/Picture/CardModel.h"

#include "Host/Lineup/Check/Picture/Matrix.h"
#include "Host/Lineup/Check/Picture/PatchName.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <span>

namespace lineup::picture {

namespace {

// Pixels of one line that are alike, or that rise together.
struct Run {
    int first;
    int end;
    bool isRamp;
};

// Lines that are alike.
struct Band {
    int first;
    int end;
    std::vector<Run> runs;
};

constexpr int kFewestSteps = 8;  // of a ramp

bool SameColumn(const FloatPicture& picture, int line, int x, int other) {
    for (int plane = 0; plane < FloatPicture::kPlanes; ++plane) {
        const auto values = picture.Line(plane, line);
        if (values[static_cast<std::size_t>(x)] != values[static_cast<std::size_t>(other)]) {
            return false;
        }
    }
    return true;
}

bool SameLine(const FloatPicture& picture, int line, int other) {
    for (int plane = 0; plane < FloatPicture::kPlanes; ++plane) {
        const auto one = picture.Line(plane, line);
        if (std::memcmp(one.data(), picture.Line(plane, other).data(), one.size_bytes()) != 0) {
            return false;
        }
    }
    return true;
}

std::vector<Run> PlainRuns(const FloatPicture& picture, int line) {
    std::vector<Run> runs;
    for (int x = 0; x < picture.Width(); ++x) {
        if (x > 0 && SameColumn(picture, line, x, x - 1)) {
            runs.back().end = x + 1;
        } else {
            runs.push_back({x, x + 1, false});
        }
    }
    return runs;
}

// Many short runs one after the other are a ramp.
std::vector<Run> RunsOf(const FloatPicture& picture, int line) {
    const int mostShort = std::max(2, picture.Width() / 100);
    const std::vector<Run> plain = PlainRuns(picture, line);
    std::vector<Run> runs;
    for (std::size_t i = 0; i < plain.size();) {
        std::size_t end = i;
        while (end < plain.size() && plain[end].end - plain[end].first <= mostShort) {
            ++end;
        }
        if (end - i >= kFewestSteps) {
            runs.push_back({plain[i].first, plain[end - 1].end, true});
            i = end;
        } else {
            runs.push_back(plain[i++]);
        }
    }
    return runs;
}

std::vector<Band> BandsOf(const FloatPicture& picture) {
    std::vector<Band> bands;
    for (int line = 0; line < picture.Height(); ++line) {
        if (line > 0 && SameLine(picture, line, line - 1)) {
            bands.back().end = line + 1;
        } else {
            bands.push_back({line, line + 1, RunsOf(picture, line)});
        }
    }
    return bands;
}

class Anatomist {
public:
    Anatomist(const FloatPicture& picture, CardModel& model)
        : mPicture(&picture), mModel(&model), mBands(BandsOf(picture)) {}

    void Work() {
        for (const Band& band : mBands) {
            AddPatches(band);
            AddUprightEdges(band);
        }
        for (std::size_t i = 1; i < mBands.size(); ++i) {
            AddLevelEdges(mBands[i - 1], mBands[i]);
        }
        AddLevelBorders();
    }

private:
    [[nodiscard]] double X(int x) const { return static_cast<double>(x) / mPicture->Width(); }
    [[nodiscard]] double Y(int y) const { return static_cast<double>(y) / mPicture->Height(); }

    [[nodiscard]] Triple Rgb(const Band& band, const Run& run) const {
        const auto at = [&](int plane) {
            return static_cast<double>(mPicture->Line(plane, band.first)[static_cast<std::size_t>(run.first)]);
        };
        return Multiply(Inverse(MatrixOf("bt601")), Triple{at(0), at(1), at(2)});
    }

    void AddPatches(const Band& band) {
        for (const Run& run : band.runs) {
            const Box box{X(run.first), Y(band.first), X(run.end), Y(band.end)};
            if (run.isRamp) {
                mModel->ramps.push_back(box);
                continue;
            }
            const Triple rgb = Rgb(band, run);
            std::string name = PatchName(rgb);
            const int count = ++mNames[name];
            mModel->patches.push_back({count > 1 ? name + " " + std::to_string(count) : name, box, rgb});
        }
    }

    void AddUprightEdges(const Band& band) {
        const auto add = [&](int at, const Run* before, const Run* after) {
            const bool isBorder = before == nullptr || after == nullptr;
            const Run& inside = before == nullptr ? *after : *before;
            double room = X(inside.end - inside.first);
            if (!isBorder) {
                room = std::min(room, X(after->end - after->first));
            }
            mModel->edges.push_back({true, X(at), Y(band.first), Y(band.end), room,
                                     Rgb(band, before != nullptr ? *before : *after),
                                     Rgb(band, after != nullptr ? *after : *before), isBorder});
        };
        add(0, nullptr, &band.runs.front());
        for (std::size_t i = 1; i < band.runs.size(); ++i) {
            if (!band.runs[i - 1].isRamp && !band.runs[i].isRamp) {
                add(band.runs[i].first, &band.runs[i - 1], &band.runs[i]);
            }
        }
        add(band.runs.back().end, &band.runs.back(), nullptr);
    }

    void AddLevelEdges(const Band& above, const Band& below) {
        const double room = std::min(Y(above.end - above.first), Y(below.end - below.first));
        for (const Run& one : above.runs) {
            for (const Run& other : below.runs) {
                const int first = std::max(one.first, other.first);
                const int end = std::min(one.end, other.end);
                if (first < end && !one.isRamp && !other.isRamp) {
                    mModel->edges.push_back(
                        {false, Y(below.first), X(first), X(end), room, Rgb(above, one), Rgb(below, other), false});
                }
            }
        }
    }

    void AddLevelBorders() {
        const auto add = [&](const Band& band, int at) {
            for (const Run& run : band.runs) {
                const Triple rgb = Rgb(band, run);
                mModel->edges.push_back(
                    {false, Y(at), X(run.first), X(run.end), Y(band.end - band.first), rgb, rgb, true});
            }
        };
        add(mBands.front(), 0);
        add(mBands.back(), mPicture->Height());
    }

    const FloatPicture* mPicture;
    CardModel* mModel;
    std::vector<Band> mBands;
    std::map<std::string, int> mNames;
};

}  // namespace

CardModel ReadCardModel(const Clip& clip, Card card, int width, int height) {
    const FloatPicture picture = ReadPicture(clip, width, height, card);
    CardModel model{.card = card, .width = width, .height = height, .patches = {}, .edges = {}, .ramps = {}};
    Anatomist(picture, model).Work();
    return model;
}

}  // namespace lineup::picture
