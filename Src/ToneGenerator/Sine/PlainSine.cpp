#include "Src/ToneGenerator/Sine/PlainSine.h"

#include <cmath>

namespace sine {

float PlainSample(double phase, double amplitude) {
    return static_cast<float>(std::sin(phase) * amplitude);
}

void WritePlain(const Wave& wave, float* out, long long numSamples) {
    double phase = wave.phase;
    for (long long i = 0; i < numSamples; ++i) {
        out[i] = PlainSample(phase, wave.amplitude);
        phase += wave.step;
    }
}

}  // namespace sine
