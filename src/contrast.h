#ifndef CONTRAST_H
#define CONTRAST_H

#include <QColor>

/// What text must have on its background to be read, after the guidelines WCAG 2 (level AA).
inline constexpr double ReadableContrast = 4.5;

/// The contrast of two opaque colours by the formula of these guidelines: from 1 for equal colours
/// to 21 for black and white.
[[nodiscard]] double contrast(const QColor &a, const QColor &b);

/// \p text if it can be read on \p background, and otherwise black or white, whichever stands out
/// more.
[[nodiscard]] QColor readableOn(const QColor &background, const QColor &text);

#endif // CONTRAST_H
