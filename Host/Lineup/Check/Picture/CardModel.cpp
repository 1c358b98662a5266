#include "Host/Lineup/Check/Picture/CardModel.h"

#include "Host/Lineup/Check/Picture/Matrix.h"
#include "Host/Lineup/Check/Picture/PatchName.h"
#include "Host/Lineup/Picture/DrawnPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace lineup::picture {

namespace {

// Pixels of one line that are alike, or that rise together.
struct Run {
    int first;
    int end;
    bool isRamp;
    Triple rgb;  // of the first
};

// Lines that are alike.
struct Band {
    int first;
    int end;
    std::vector<Run> runs;
};

constexpr int kFewestSteps = 8;  // of a ramp

// A line's Y', Cb and Cr.
class CardLine {
public:
    explicit CardLine(const DrawnPicture& picture) {
        std::ranges::for_each(mPlanes, [&](auto& plane) { plane.resize(static_cast<std::size_t>(picture.Width())); });
    }

    void Read(const DrawnPicture& picture, int line) { picture.Unpack(line, {mPlanes[0], mPlanes[1], mPlanes[2]}); }

    [[nodiscard]] int Width() const { return static_cast<int>(mPlanes[0].size()); }

    [[nodiscard]] bool AreAlike(int x, int other) const {
        return std::ranges::all_of(mPlanes, [=](const auto& plane) {
            return plane[static_cast<std::size_t>(x)] == plane[static_cast<std::size_t>(other)];
        });
    }

    [[nodiscard]] Triple Rgb(int x) const {
        const auto at = [&](std::size_t plane) {
            return static_cast<double>(mPlanes.at(plane)[static_cast<std::size_t>(x)]);
        };
        return Multiply(Inverse(MatrixOf("bt601")), Triple{at(0), at(1), at(2)});
    }

private:
    std::array<std::vector<float>, DrawnPicture::kPlanes> mPlanes;
};

std::vector<Run> PlainRuns(const CardLine& line) {
    std::vector<Run> runs;
    for (int x = 0; x < line.Width(); ++x) {
        if (x > 0 && line.AreAlike(x, x - 1)) {
            runs.back().end = x + 1;
        } else {
            runs.push_back({x, x + 1, false, {}});
        }
    }
    return runs;
}

// Many short runs one after the other are a ramp.
std::vector<Run> RunsOf(const CardLine& line) {
    const int mostShort = std::max(2, line.Width() / 100);
    const std::vector<Run> plain = PlainRuns(line);
    std::vector<Run> runs;
    for (std::size_t i = 0; i < plain.size();) {
        std::size_t end = i;
        while (end < plain.size() && plain[end].end - plain[end].first <= mostShort) {
            ++end;
        }
        if (end - i >= kFewestSteps) {
            runs.push_back({plain[i].first, plain[end - 1].end, true, {}});
            i = end;
        } else {
            runs.push_back(plain[i++]);
        }
    }
    std::ranges::for_each(runs, [&line](Run& run) { run.rgb = line.Rgb(run.first); });
    return runs;
}

std::vector<Band> BandsOf(const DrawnPicture& picture) {
    std::vector<Band> bands;
    CardLine read(picture);
    for (int line = 0; line < picture.Height(); ++line) {
        if (line > 0 && picture.AreAlike(line, line - 1)) {
            bands.back().end = line + 1;
        } else {
            read.Read(picture, line);
            bands.push_back({line, line + 1, RunsOf(read)});
        }
    }
    return bands;
}

class Anatomist {
public:
    Anatomist(const DrawnPicture& picture, CardModel& model)
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

    void AddPatches(const Band& band) {
        for (const Run& run : band.runs) {
            const Box box{X(run.first), Y(band.first), X(run.end), Y(band.end)};
            if (run.isRamp) {
                mModel->ramps.push_back(box);
                continue;
            }
            std::string name = PatchName(run.rgb);
            const int count = ++mNames[name];
            mModel->patches.push_back({count > 1 ? name + " " + std::to_string(count) : name, box, run.rgb});
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
                                     (before != nullptr ? before : after)->rgb,
                                     (after != nullptr ? after : before)->rgb, isBorder});
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
                    mModel->edges.push_back({false, Y(below.first), X(first), X(end), room, one.rgb, other.rgb, false});
                }
            }
        }
    }

    void AddLevelBorders() {
        const auto add = [&](const Band& band, int at) {
            for (const Run& run : band.runs) {
                mModel->edges.push_back(
                    {false, Y(at), X(run.first), X(run.end), Y(band.end - band.first), run.rgb, run.rgb, true});
            }
        };
        add(mBands.front(), 0);
        add(mBands.back(), mPicture->Height());
    }

    const DrawnPicture* mPicture;
    CardModel* mModel;
    std::vector<Band> mBands;
    std::map<std::string, int> mNames;
};

}  // namespace

CardModel ReadCardModel(const Clip& clip, Card card, int width, int height) {
    const DrawnPicture picture(clip, width, height, card);
    CardModel model{.card = card, .width = width, .height = height, .patches = {}, .edges = {}, .ramps = {}};
    Anatomist(picture, model).Work();
    return model;
}

}  // namespace lineup::picture
