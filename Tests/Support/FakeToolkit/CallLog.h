#pragma once

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace test {

/// How a fake answers a call: as it should, with nothing, or with what makes no sense.
enum class Answer { Right, Nothing, Nonsense };

/// What was asked of the fakes of one toolkit, in order, how many of them are alive, and how odd they are.
struct CallLog {
    std::vector<std::string> calls;
    int liveNodes = 0;
    bool recordReferences = false;          ///< AddRef and Release are recorded too
    bool radioButtonsReportAtOnce = false;  ///< they call whoever asks to be notified, before anything changes

    /// Asked at every call but Release, by the operation's name, how to answer; may throw. Operations without
    /// an answer of their own take any for the right one.
    std::function<Answer(const char* operation)> onCall;

    [[nodiscard]] Answer AnswerTo(const char* operation) const { return onCall ? onCall(operation) : Answer::Right; }

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
