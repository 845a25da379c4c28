// Expected text metrics, computed in the tests from the fonts themselves through
// Qt's own font classes (QFont at a large pixel size without hinting,
// QFontMetricsF for the cap height and each character's advance,
// QPainterPath::addText for the ink), independently of the host's font catalog,
// glyph cache and measurer. A test names the family it expects a style to use.
// Shared by the font tests and the database tests of text geometry.
#pragma once

#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainterPath>
#include <QPolygonF>
#include <QString>
#include <QTransform>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "db/TextMetrics.h"

namespace korva::test {

// The family every style without a TrueType font resolves to (the template's
// Standard style names the SHX font "txt").
inline const QString kFallbackFamily = QStringLiteral("DejaVu Sans");

class FontExpectation {
public:
    explicit FontExpectation(const QString& family, bool bold = false, bool italic = false) : font_(family) {
        font_.setPixelSize(2048);
        font_.setBold(bold);
        font_.setItalic(italic);
        font_.setHintingPreference(QFont::PreferNoHinting);
        font_.setKerning(false);
        font_.setStyleStrategy(QFont::NoFontMerging);
        metrics_ = QFontMetricsF(font_);
    }

    QString resolvedFamily() const { return QFontInfo(font_).family(); }
    double capHeight() const { return metrics_.capHeight(); }

    // The sum of the characters' advances, in units of the cap height.
    double advance(const QString& text) const {
        double sum = 0.0;
        for (const uint c : text.toUcs4()) sum += metrics_.horizontalAdvance(QString::fromUcs4(&c, 1));
        return sum / capHeight();
    }

    // The ink of the text's glyphs set one after the other, cap-height units, y up.
    QRectF ink(const QString& text) const {
        QPainterPath path;
        path.addText(0, 0, font_, text);
        return QTransform(1.0 / capHeight(), 0, 0, -1.0 / capHeight(), 0, 0).map(path).boundingRect();
    }

    // The underline's centre and lower edge below the baseline, cap-height units (negative).
    double underlineCentre() const { return -metrics_.underlinePos() / capHeight(); }
    double underlineBottom() const { return -(metrics_.underlinePos() + metrics_.lineWidth() / 2.0) / capHeight(); }

    // The box of a plain text (no codes): x from 0 to the advances, widened by the
    // ink; y from the ink's bottom (or the baseline) to the cap height (or the
    // ink's top); scaled so the cap height is `height`, x by the width factor,
    // then slanted by the oblique angle and boxed again.
    db::TextBox box(const QString& text, double height, double widthFactor = 1.0, double oblique = 0.0,
                    double bottomAtLeast = 0.0) const {
        if (text.isEmpty()) return {};
        const QRectF ink = this->ink(text);
        const bool hasInk = !ink.isNull();
        const double left = hasInk ? std::min(0.0, ink.left()) : 0.0;
        const double right = hasInk ? std::max(advance(text), ink.right()) : advance(text);
        const double bottom = std::min({0.0, hasInk ? ink.top() : 0.0, bottomAtLeast});
        const double top = hasInk ? std::max(1.0, ink.bottom()) : 1.0;
        const QTransform place(height * widthFactor, 0, height * std::tan(oblique), height, 0, 0);
        const QRectF placed = place.map(QPolygonF(QRectF(QPointF(left, bottom), QPointF(right, top)))).boundingRect();
        return {placed.left(), placed.right(), placed.top(), placed.bottom()};
    }

private:
    QFont font_;
    QFontMetricsF metrics_{QFont()};
};

inline ::testing::AssertionResult boxesNear(const db::TextBox& actual, const db::TextBox& expected,
                                            double tolerance) {
    const double worst = std::max({std::abs(actual.left - expected.left), std::abs(actual.right - expected.right),
                                   std::abs(actual.bottom - expected.bottom), std::abs(actual.top - expected.top)});
    if (worst <= tolerance) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "box [" << actual.left << ", " << actual.right << "] x [" << actual.bottom
                                         << ", " << actual.top << "] is not [" << expected.left << ", "
                                         << expected.right << "] x [" << expected.bottom << ", " << expected.top
                                         << "] (off by " << worst << ")";
}

}  // namespace korva::test
