#include "desktop.h"
#include "mainwindow.h"

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // The source texts are French, and so is the one catalogue, which holds nothing.
    const QStringList languages = QLocale::system().uiLanguages();
    QTranslator translator;
    for (const QString &language : languages) {
        const QString baseName = "Varlune_"_L1 + QLocale(language).name();
        if (translator.load(":/i18n/"_L1 + baseName)) {
            QApplication::installTranslator(&translator);
            break;
        }
    }

    prepareApplication();
    MainWindow window(nullptr);
    window.setWindowIcon(QIcon(u":/icones/ico/logo_varlune.ico"_s));
    fitOnScreen(&window);
    window.show();
    return QApplication::exec();
}
