#include "desktop.h"

#include <QApplication>
#include <QIcon>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

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
