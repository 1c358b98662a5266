#pragma once

#include <lineup/Send.h>

namespace lineup {

/// One kind of stream each, sent as Send says.
SendStatus SendTransportStream(const Clip& clip, const SendSettings& settings, const SendProgress& progress);
SendStatus SendFlv(const Clip& clip, const SendSettings& settings, const SendProgress& progress);
SendStatus SendLinearSound(const Clip& clip, const SendSettings& settings, const SendProgress& progress);

}  // namespace lineup
