#include "contrast.h"

#include <algorithm>
#include <cmath>

namespace {

double relativeLuminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
         + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor &a, const QColor &b)
{
    const auto [dark, light] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

QColor readableOn(const QColor &background, const QColor &text)
{
    if (contrast(text, background) >= ReadableContrast)
        return text;
    const bool dark = contrast(Qt::black, background) >= contrast(Qt::white, background);
    return dark ? Qt::black : Qt::white;
}
