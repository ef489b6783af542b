#include "markingtranslator.h"

#include <QCoreApplication>

MarkingTranslator::MarkingTranslator()
{
    QCoreApplication::installTranslator(this);
}

MarkingTranslator::~MarkingTranslator()
{
    QCoreApplication::removeTranslator(this);
}

QString MarkingTranslator::translate(const char *context, const char *sourceText, const char *,
                                     int) const
{
    return u'[' + QString::fromUtf8(context) + u']' + QString::fromUtf8(sourceText);
}
