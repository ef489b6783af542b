#include "desktop.h"

#include "compactstyle.h"

#include <QApplication>
#include <QIcon>
#include <QScreen>
#include <QTranslator>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

// What common desktops need at most, in device-independent pixels.
constexpr int TitleBarHeight = 40;
constexpr int PanelHeight = 40;

/// The framework's texts in French.
class FrameworkTexts : public QTranslator
{
public:
    using QTranslator::QTranslator;

    [[nodiscard]] QString translate(const char *context, const char *sourceText,
                                    const char *disambiguation, int n) const override
    {
        // The types of files, such as "Folder", have moved to this context without their French.
        QString text = QTranslator::translate(context, sourceText, disambiguation, n);
        if (text.isNull() && context == "QAbstractFileIconProvider"_L1)
            text = QTranslator::translate("QFileDialog", sourceText, disambiguation, n);
        return text;
    }
};

} // namespace

void prepareApplication()
{
    QApplication::setWindowIcon(QIcon(u":/icones/ico/logo_varlune.ico"_s));
    QGuiApplication::setDesktopFileName(u"varlune"_s);

    auto *texts = new FrameworkTexts(qApp);
    if (texts->load(u":/qt/qtbase_fr.qm"_s)) // it is in the resources
        QApplication::installTranslator(texts);
}

void fitOnScreen(QWidget *window)
{
    const QScreen *screen = window->screen();
    const QRect available = screen->availableGeometry();
    QSize room = available.size() - QSize(0, TitleBarHeight);
    // Wayland tells no program of the panels on the screen.
    if (QGuiApplication::platformName().startsWith("wayland"_L1))
        room.rheight() -= PanelHeight;

    const QSize built = window->size();
    // On a screen that is too low for the last step, too, there is nothing more to be done.
    fitInto(window, room);
    // A window of the height of the screen must start at its top.
    if (window->size() != built)
        window->move(available.x() + (available.width() - window->width()) / 2, available.y());
}
