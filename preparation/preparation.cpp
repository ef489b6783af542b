#include "preparation.h"

#include "proof.h"
#include "refusal.h"
#include "repairs.h"

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char Mark[] = "\xEF\xBB\xBF"; // the byte-order mark in UTF-8
constexpr qsizetype BeginSize = 1024; // first bytes of a file that are kept while it is prepared

/// Whether the text stands in the bytes, and is no copy.
bool pointsInto(const QByteArray &text, const QByteArray &bytes)
{
    const std::less_equal<> isBefore; // for pointers into different things, too
    return isBefore(bytes.constData(), text.constData())
        && isBefore(text.constData(), bytes.constData() + bytes.size());
}

/// Decodes the bytes into the source of \p preparation.
void readText(Preparation *preparation, QByteArray bytes)
{
    Decoded decoded = decode(bytes, preparation->encoding.encoding);
    preparation->hasMark =
        preparation->encoding.encoding == Encoding::Utf8 && bytes.startsWith(Mark);
    preparation->source = std::move(decoded.utf8);
    preparation->undecoded = std::move(decoded.undecoded);
    preparation->cutLines = std::move(decoded.cutLines);
    if (pointsInto(preparation->source, bytes))
        preparation->file = std::move(bytes);
}

/// Takes the copy away, and with it all that was found for it: it points into the copy.
void dropCopy(Preparation *preparation)
{
    preparation->copy.clear();
    preparation->occurrences.clear();
    preparation->counts = {};
    preparation->identifiers.clear();
}

} // namespace

bool Preparation::hasWarnings() const
{
    const QList<FindingType> &types = findingTypes();
    return !proof.opens() || std::any_of(types.begin(), types.end(), [this](const auto &type) {
        return type.kind == FindingKind::Warning && count(type.finding) > 0;
    });
}

QString Preparation::verdict() const
{
    if (!proof.opens())
        return tr("Varlune n'ouvrira pas ce fichier : la ligne %1 l'arrête : %2")
            .arg(QString::number(proof.stoppingLine), proof.stoppingText);
    return proof.records == 1
             ? tr("Varlune ouvrira ce fichier : 1 enregistrement")
             : tr("Varlune ouvrira ce fichier : %1 enregistrements").arg(proof.records);
}

Preparation prepareFile(const QString &path, const Options &options, const Progress &progress)
{
    QByteArray bytes;
    Preparation preparation;
    preparation.refusal = readForPreparation(path, &bytes);
    return preparation.isDone() ? prepare(std::move(bytes), options, progress) : preparation;
}

Preparation prepare(QByteArray bytes, const Options &options, const Progress &progress)
{
    Preparation preparation;
    preparation.refusal = refusalOfBytes(bytes);
    if (!preparation.isDone())
        return preparation;
    const bool isForced = options.encoding.has_value();
    preparation.encoding = isForced ? EncodingChoice{*options.encoding, Preparation::tr("imposé")}
                                    : chooseEncoding(bytes);
    preparation.refusal = refusalOfText(bytes, preparation.encoding.encoding, isForced);
    if (!preparation.isDone())
        return preparation;

    const QByteArray begin = bytes.left(BeginSize);
    readText(&preparation, std::move(bytes));
    const std::optional<qint64> records = repair(&preparation, options, progress);
    preparation.cancelled = !records;
    if (records == 0)
        preparation.refusal = refusalWithoutRecords(preparation.source, begin, isForced);
    if (preparation.isDone())
        preparation.proof = proveOpening(preparation.copy);
    else
        dropCopy(&preparation);
    return preparation;
}
