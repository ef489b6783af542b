#include "encodingfit.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// How usual a letter of the Latin script is in French and other western names.
int usageOf(QChar letter)
{
    if (u"éÉ"_s.contains(letter))
        return 5;
    if (u"èàâçêëîïôùûœÈÀÂÇÊËÎÏÔÙÛŒ"_s.contains(letter))
        return 4;
    if (u"äöüÄÖÜß"_s.contains(letter))
        return 3;
    return u"áìíñòóõãåæøúýÿÁÍÑÓÅÆØÚ"_s.contains(letter) ? 2 : 1;
}

/// What speaks for or against a text in which \p c stands between \p before and \p after.
int pointsOf(QChar before, QChar c, QChar after)
{
    if (c.isMark()) // that composes with no letter
        return before.isLetter() || before.isMark() ? 0 : -5;
    if (c.category() == QChar::Letter_Uppercase || c.category() == QChar::Letter_Lowercase) {
        const bool isMisplaced =
            c.isUpper() && (before.isLower() || (before.isLetter() && after.isLower()));
        return c.script() != QChar::Script_Latin || isMisplaced ? -3 : usageOf(c);
    }
    if (before.isLetter() && after.isLetter() && !u"’´·\u00AD"_s.contains(c))
        return -3;
    return u"’‘“”«»–—…°ºª€£§©®™†•·²³½¿¡\u00A0"_s.contains(c) ? 1 : 0;
}

} // namespace

int fitOf(QByteArrayView sample, Encoding encoding)
{
    const Decoded decoded = decode(sample, encoding);
    const QString text = QString::fromUtf8(decoded.utf8);
    int points = -5 * int(decoded.undecoded.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).unicode() < 0x80)
            continue;
        points += pointsOf(i > 0 ? text.at(i - 1) : u'\n', text.at(i),
                           i + 1 < text.size() ? text.at(i + 1) : u'\n');
    }
    return points;
}

Encoding bestFit(QByteArrayView sample, const QList<Encoding> &encodings)
{
    Encoding best = encodings.first();
    int bestPoints = std::numeric_limits<int>::min();
    for (const Encoding encoding : encodings) {
        if (const int points = fitOf(sample, encoding); points > bestPoints) {
            best = encoding;
            bestPoints = points;
        }
    }
    return best;
}
