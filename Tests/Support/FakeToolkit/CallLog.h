#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace test {

/// What was asked of the fakes of one toolkit, in order, how many of them are alive, and how odd they are.
struct CallLog {
    std::vector<std::string> calls;
    int liveNodes = 0;
    bool recordReferences = false;          ///< AddRef and Release are recorded too
    bool radioButtonsReportAtOnce = false;  ///< they call whoever asks to be notified, before anything changes

    /// Records "receiver.operation argument argument".
    template <class... Arguments>
    void Add(const std::string& receiver, const char* operation, const Arguments&... arguments) {
        std::ostringstream text;
        text.precision(17);
        text << receiver << '.' << operation;
        ((text << ' ' << arguments), ...);
        calls.push_back(text.str());
    }
};

}  // namespace test
