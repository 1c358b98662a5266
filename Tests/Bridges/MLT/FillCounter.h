#pragma once

namespace test {

/// How often the fill service has been called in this process. A program that links FillCounter.cpp has its
/// own IR_FillWithColor in front of the host's, which counts and hands on. One thread.
int FillCount();

}  // namespace test
