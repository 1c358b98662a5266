#include <lineup/FormatTable.h>
#include <lineup/StillPicture.h>
#include "Host/Lineup/Export/MediaLibrary.h"
#include "Host/Lineup/Export/Plan/ExportPlan.h"

namespace lineup {

void WritePng(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target, bool overwrite) {
    CheckPictureSize(*FindVideoCodec("png"), width, height);
    MediaLibrary::Get().WritePng()(clip, width, height, card, target, overwrite);
}

}  // namespace lineup
