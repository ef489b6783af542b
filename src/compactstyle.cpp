#include "compactstyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QLayout>
#include <QStyleOption>

#include <algorithm>

namespace {

/// The least size of the window as it would be now.
QSize neededSize(const QWidget *window)
{
    // Layouts keep what they have computed, and nobody tells the inner ones of a new style.
    const QList<QLayout *> layouts = window->findChildren<QLayout *>();
    for (QLayout *layout : layouts)
        layout->invalidate();
    return window->minimumSizeHint();
}

bool fits(const QWidget *window, const QSize &room)
{
    const QSize needed = neededSize(window);
    return needed.width() <= room.width() && needed.height() <= room.height();
}

/// \p font as the window has it, smaller by so many points.
QFont smaller(QFont font, int points)
{
    const double size = font.pointSizeF();
    // A font that is given in pixels has none.
    font.setPointSizeF((size > 0 ? size : QFontInfo(font).pointSizeF()) - points);
    return font;
}

} // namespace

CompactStyle::CompactStyle(const QString &base, const QWidget *window, const Measures &measures)
    : QProxyStyle(base),
      m_window(window),
      m_measures(measures)
{
}

int CompactStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                              const QWidget *widget) const
{
    const int value = QProxyStyle::pixelMetric(metric, option, widget);
    if (!isIn(widget))
        return value;
    switch (metric) {
    case PM_LayoutTopMargin:
    case PM_LayoutBottomMargin:
        return std::min(value, m_measures.margin);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
    case PM_ButtonIconSize:
        return std::min(value, m_measures.mark);
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        // Asks for layoutSpacing(), which knows the orientation: a layout inside another one would
        // take over the spacing of that one, a row of controls that between the rows.
        return -1;
    default:
        return value;
    }
}

int CompactStyle::layoutSpacing(QSizePolicy::ControlType control1,
                                QSizePolicy::ControlType control2, Qt::Orientation orientation,
                                const QStyleOption *option, const QWidget *widget) const
{
    const bool vertical = orientation == Qt::Vertical;
    int value = QProxyStyle::pixelMetric(
        vertical ? PM_LayoutVerticalSpacing : PM_LayoutHorizontalSpacing, option, widget);
    if (value < 0)
        value = QProxyStyle::layoutSpacing(control1, control2, orientation, option, widget);
    return vertical && isIn(widget) ? std::min(value, m_measures.spacing) : value;
}

QSize CompactStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                     const QSize &size, const QWidget *widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (!isIn(widget))
        return result;
    const int frame = pixelMetric(PM_DefaultFrameWidth, option, widget);
    int least = 0;
    switch (type) {
    case CT_LineEdit:
        least = option->fontMetrics.height() + 2 * (frame + 1); // a pixel beside the frame
        break;
    case CT_PushButton:
        least = size.height() + 2 * frame;
        break;
    case CT_CheckBox:
        least = std::max(size.height(), pixelMetric(PM_IndicatorHeight, option, widget));
        break;
    case CT_RadioButton:
        least = std::max(size.height(), pixelMetric(PM_ExclusiveIndicatorHeight, option, widget));
        break;
    default:
        return result;
    }
    result.setHeight(
        std::min(result.height(), std::max(result.height() - m_measures.padding, least)));
    return result;
}

bool CompactStyle::isIn(const QWidget *widget) const
{
    return widget && widget->window() == m_window;
}

bool fitInto(QWidget *window, const QSize &room)
{
    constexpr int AsItIs = 99;
    const struct
    {
        CompactStyle::Measures measures;
        int points; // taken off the font
    } steps[] = {
        // clang-format off
        {{4, AsItIs, 0, AsItIs}, 0},
        {{2, AsItIs, 0, AsItIs}, 0},
        {{2, 4, 0, AsItIs}, 0},
        {{2, 2, 0, AsItIs}, 0},
        {{2, 2, 2, AsItIs}, 0},
        {{2, 2, 4, AsItIs}, 0},
        {{1, 1, 4, AsItIs}, 0},
        {{0, 0, 4, AsItIs}, 0},
        {{0, 0, 4, AsItIs}, 1},
        {{0, 0, 4, AsItIs}, 2},
        {{0, 0, 8, 12}, 2},
        // clang-format on
    };
    const QString base = QApplication::style()->name();
    const QFont font = window->font();
    bool fitting = fits(window, room);
    for (const auto &step : steps) {
        if (fitting)
            break;
        QApplication::setStyle(new CompactStyle(base, window, step.measures));
        if (step.points > 0)
            window->setFont(smaller(font, step.points));
        fitting = fits(window, room);
    }
    const QSize limited = window->size().boundedTo(room);
    // Not below what it needs: a window that grows when it is shown loses its place under X11.
    if (limited != window->size())
        window->resize(limited.expandedTo(neededSize(window)));
    return fitting;
}
