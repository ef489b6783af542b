#include "charactertable.h"

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <iconv.h>
#endif

namespace {

#ifdef Q_OS_WIN

/// Converts single bytes by a code page of Windows.
class Converter
{
public:
    explicit Converter(Encoding encoding) : m_codePage(codePageOf(encoding)) { }

    [[nodiscard]] QString character(char byte) const
    {
        wchar_t text[2] = {};
        const int size = MultiByteToWideChar(m_codePage, MB_ERR_INVALID_CHARS, &byte, 1, text, 2);
        return QString::fromWCharArray(text, size);
    }

private:
    static UINT codePageOf(Encoding encoding)
    {
        switch (encoding) {
        case Encoding::Windows1252:
            return 1252;
        case Encoding::Cp437:
            return 437;
        case Encoding::Cp850:
            return 850;
        case Encoding::MacRoman:
            return 10000;
        case Encoding::Latin9:
            return 28605;
        default:
            return 28591;
        }
    }

    UINT m_codePage;
};

#else

/// Converts single bytes by iconv.
class Converter
{
public:
    explicit Converter(Encoding encoding) : m_iconv(iconv_open("UTF-8", nameOf(encoding))) { }
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_iconv);
    }
    Q_DISABLE_COPY_MOVE(Converter)

    [[nodiscard]] QString character(char byte) const
    {
        char text[8] = {};
        char *in = &byte;
        char *out = text;
        size_t inLeft = 1;
        size_t outLeft = sizeof text;
        if (!isOpen() || iconv(m_iconv, &in, &inLeft, &out, &outLeft) == size_t(-1))
            return {};
        return QString::fromUtf8(text, out - text);
    }

private:
    static const char *nameOf(Encoding encoding)
    {
        switch (encoding) {
        case Encoding::Windows1252:
            return "CP1252";
        case Encoding::Cp437:
            return "CP437";
        case Encoding::Cp850:
            return "CP850";
        case Encoding::MacRoman:
            return "MACINTOSH";
        case Encoding::Latin9:
            return "ISO-8859-15";
        default:
            return "ISO-8859-1";
        }
    }

    [[nodiscard]] bool isOpen() const
    {
        return reinterpret_cast<qintptr>(m_iconv) != -1;
    }

    iconv_t m_iconv;
};

#endif

bool isOfText(const QString &character)
{
    return character.size() == 1 && character.at(0).category() != QChar::Other_Control
        && character.at(0).category() != QChar::Other_PrivateUse;
}

} // namespace

CharacterTable tableOf(Encoding encoding)
{
    const Converter converter(encoding);
    CharacterTable table;
    for (size_t i = 0; i < table.size(); ++i) {
        const QString character = converter.character(char(0x80 + i));
        if (isOfText(character))
            table[i] = character.toUtf8();
    }
    return table;
}
