// A text measurer with round numbers for tests whose expectations are worked by
// hand: every byte one unit wide per unit of height and width factor, from the
// baseline to the height (no descent). UnitTextMeasurer installs it for its
// lifetime and then puts back the measurer it replaced (the host's fonts).
#pragma once

#include <string_view>

#include "db/TextMetrics.h"

namespace korva::test {

inline db::TextBox unitMeasurer(std::string_view text, const db::TextStyleMetrics& style) {
    db::TextBox box;
    box.right = static_cast<double>(text.size()) * style.height * style.widthFactor;
    box.top = text.empty() ? 0.0 : style.height;
    return box;
}

class UnitTextMeasurer {
public:
    UnitTextMeasurer() : previous_(db::installTextMeasurer(&unitMeasurer)) {}
    ~UnitTextMeasurer() { db::installTextMeasurer(previous_); }
    UnitTextMeasurer(const UnitTextMeasurer&) = delete;
    UnitTextMeasurer& operator=(const UnitTextMeasurer&) = delete;

private:
    db::TextMeasurer previous_;
};

}  // namespace korva::test
