#include "Apps/studio/Check/RecordingPicture.h"

#include <lineup/Exporter.h>
#include "Apps/studio/Check/CodeScale.h"
#include "Host/Lineup/Check/Reader/RecordingReader.h"

#include <QFile>
#include <optional>

namespace studio {

namespace {

constexpr double kSameMoment = 1e-3;  // s

// Keeps the last picture up to a time, or the first one there is.
class PictureAt : public lineup::PictureListener {
public:
    PictureAt(double seconds, const PictureLoader::IsWanted& isWanted) : mSeconds(seconds), mIsWanted(&isWanted) {}

    void OnFacts(const lineup::decoding::Picture& /*facts*/) override {}
    void OnEnd(const lineup::decoding::PictureEnd& /*end*/) override {}

    bool OnPicture(const lineup::DecodedPicture& picture) override {
        const bool isLater = picture.head.seconds > mSeconds + kSameMoment;
        if (picture.head.planes > 0 && !(isLater && mPicture)) {
            mPicture = picture;
        }
        return !isLater && (*mIsWanted)();
    }

    [[nodiscard]] const std::optional<lineup::DecodedPicture>& Picture() const noexcept { return mPicture; }

private:
    double mSeconds;
    const PictureLoader::IsWanted* mIsWanted;
    std::optional<lineup::DecodedPicture> mPicture;
};

// Chroma stands where its pixels do, not made smoother: scopes show what is there.
lineup::FloatPicture ToFloats(const lineup::DecodedPicture& picture, const CodeScale& codes) {
    const lineup::decoding::Frame& head = picture.head;
    lineup::FloatPicture frame(static_cast<int>(head.width), static_cast<int>(head.height));
    const float scale = codes.To8Bits();
    const std::size_t chromaWidth = (head.width + (1U << head.subsampleWidth) - 1U) >> head.subsampleWidth;
    const float grey = codes.isRgb ? 0 : 128;
    for (std::size_t y = 0; y < head.height; ++y) {
        const std::size_t below = (y >> head.subsampleHeight) * chromaWidth;
        const auto luma = frame.Line(0, static_cast<int>(y));
        const auto cb = frame.Line(1, static_cast<int>(y));
        const auto cr = frame.Line(2, static_cast<int>(y));
        for (std::size_t x = 0; x < luma.size(); ++x) {
            const std::size_t chroma = below + (x >> head.subsampleWidth);
            const bool hasColour = head.planes == 3;
            const Ycc colour = codes.Colour({static_cast<float>(picture.planes[0][y * head.width + x]) * scale,
                                             hasColour ? static_cast<float>(picture.planes[1][chroma]) * scale : grey,
                                             hasColour ? static_cast<float>(picture.planes[2][chroma]) * scale : grey});
            luma[x] = colour.y;
            cb[x] = colour.cb;
            cr[x] = colour.cr;
        }
    }
    return frame;
}

}  // namespace

std::shared_ptr<const CardPicture> MakeRecordingPicture(const lineup::DecodedPicture& picture) {
    const CodeScale codes = CodeScale::Of(picture);
    return std::make_shared<const CardPicture>(ToFloats(picture, codes), codes.matrix);
}

std::shared_ptr<const CardPicture> ReadRecordingPicture(const QString& file, double seconds,
                                                        const PictureLoader::IsWanted& isWanted) {
    PictureAt listener(seconds, isWanted);
    lineup::DecoderSettings settings;
    settings.wantsSound = false;
    settings.wantsPicture = true;
    settings.from = seconds;
    const auto reader =
        lineup::RecordingReader::Open(QFile::encodeName(file).toStdString(), settings, isWanted, &listener);
    reader->ReadPictures();
    if (!isWanted()) {
        throw lineup::Cancelled("the picture is no longer wanted");
    }
    if (!listener.Picture()) {
        return nullptr;
    }
    return MakeRecordingPicture(*listener.Picture());
}

}  // namespace studio
