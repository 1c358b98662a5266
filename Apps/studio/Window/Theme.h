#pragma once

#include "Apps/lanes/LaneColours.h"

#include <QColor>

namespace studio {

/// Which of the two looks the window has.
enum class Appearance { System, Light, Dark };

/// The colours of everything that the window draws itself.
struct Theme {
    bool isDark = false;
    QColor window;  ///< behind the panels
    QColor panel;   ///< fields and lists
    QColor button;
    QColor text;
    QColor dim;       ///< text that steps back
    QColor line;      ///< edges
    QColor accent;    ///< what is selected or on
    QColor onAccent;  ///< text on it
    QColor warning;
    QColor error;
    QColor surround;  ///< round the picture: grey, so that it tints nothing
    QColor lane;
    QColor laneGrid;
    QColor playhead;
    QColor meterOff;
    QColor meterLow;   ///< up to the line-up level
    QColor meterMid;   ///< up to the permitted maximum
    QColor meterHigh;  ///< above
    QColor scopeBackground;
    QColor scopeGrid;
    QColor scopeStrong;
    QColor scopeNumber;
    QColor scopeText;   ///< what is read
    QColor scopeFault;  ///< what is elsewhere than it should be

    /// Those of a drawing of lanes.
    [[nodiscard]] lanes::LaneColours Lanes() const;

    /// The one in use. UI thread.
    [[nodiscard]] static const Theme& Current();

    /// Dresses the whole application. `System` follows the palette the desktop gave it.
    static void Apply(Appearance appearance);
};

}  // namespace studio
