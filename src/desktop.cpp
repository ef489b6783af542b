#include "desktop.h"

#include <QApplication>
#include <QIcon>

using namespace Qt::StringLiterals;

void prepareApplication()
{
    QApplication::setWindowIcon(QIcon(u":/icones/ico/logo_varlune.ico"_s));
    QGuiApplication::setDesktopFileName(u"varlune"_s);
}
