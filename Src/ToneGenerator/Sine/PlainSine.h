#pragma once

namespace sine {

/// A sampled sine: sample i is sin(p[i]) * amplitude narrowed to float, where p[0] is `phase` and p[i + 1]
/// is p[i] + `step`, each product and sum rounded to double. Radians and radians a sample; any value.
struct Wave {
    double phase;
    double step;
    double amplitude;
};

/// One sample, by the C library's sine.
float PlainSample(double phase, double amplitude);

/// The definition: out[i] for i < numSamples, one after the other. numSamples <= 0 writes nothing.
void WritePlain(const Wave& wave, float* out, long long numSamples);

}  // namespace sine
