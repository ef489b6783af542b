#ifndef COMPACTSTYLE_H
#define COMPACTSTYLE_H

#include <QPointer>
#include <QProxyStyle>
#include <QWidget>

class QSize;

/// The style of the desktop, but for one window that gets by with less height: its rows are closer,
/// its controls lower. It gives up no width but that of smaller marks and icons. All other windows
/// are as they were.
class CompactStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// In pixels.
    struct Measures
    {
        int spacing; // between two rows at most
        int margin; // above the first row of a group and below the last at most
        int padding; // taken off the height of a control, which keeps the room of its text
        int mark; // side of a check mark or icon at most
    };

    /// The style named \p base with those measures for \p window.
    CompactStyle(const QString &base, const QWidget *window, const Measures &measures);

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int layoutSpacing(QSizePolicy::ControlType control1, QSizePolicy::ControlType control2,
                      Qt::Orientation orientation, const QStyleOption *option,
                      const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;

private:
    [[nodiscard]] bool isIn(const QWidget *widget) const;

    QPointer<const QWidget> m_window;
    Measures m_measures;
};

/// Makes \p window, which is not shown yet, fit into \p room, without its frame: by steps of the
/// compact style, each tighter than the one before, and at last with a smaller font, until the
/// window can be as small as that; then its size is limited to the room. A window that needs no
/// step keeps the style of the desktop. Called once, while the application has the desktop's own
/// style, from which all steps start. Returns whether the window fits now.
bool fitInto(QWidget *window, const QSize &room);

#endif // COMPACTSTYLE_H
