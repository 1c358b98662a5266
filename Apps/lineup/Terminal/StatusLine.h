#pragma once

#include <string>

namespace cli {

/// A line on standard error that is written over again and again. It is drawn only when it is wanted and standard error
/// is a terminal, and wiped at the end.
class StatusLine {
public:
    explicit StatusLine(bool wanted);
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    void Show(const std::string& text) const;
    void Clear() const;

private:
    bool mShown;
};

}  // namespace cli
