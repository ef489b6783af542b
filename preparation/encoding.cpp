#include "encoding.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

QString encodingName(Encoding)
{
    return u"UTF-8"_s;
}

std::optional<Encoding> encodingFromName(QStringView name)
{
    if (name.compare(u"UTF-8", Qt::CaseInsensitive) == 0)
        return Encoding::Utf8;
    return std::nullopt;
}

QList<Encoding> allEncodings()
{
    return {Encoding::Utf8};
}

EncodingChoice chooseEncoding(QByteArrayView)
{
    return {Encoding::Utf8, QCoreApplication::translate("Encoding", "seul codage connu")};
}

Decoded decode(QByteArrayView bytes, Encoding)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    return {QByteArray::fromRawData(bytes.data(), bytes.size()), {}};
}
