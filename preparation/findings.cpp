#include "findings.h"

#include "lines.h"
#include "preparation.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxTextSize = 300; // characters of a line that are shown

/// A text as it is shown: not longer than need be, and control characters by their pictures.
QString shown(QByteArrayView line)
{
    QString text = QString::fromUtf8(line.first(std::min(line.size(), 4 * MaxTextSize)));
    if (text.size() > MaxTextSize) {
        text.truncate(MaxTextSize - 1);
        if (text.back().isHighSurrogate())
            text.chop(1);
        text += u'…';
    }
    for (QChar &c : text) {
        if (c < u' ' && c != u'\t')
            c = QChar(0x2400 + c.unicode());
        else if (c == QChar(0x7F))
            c = QChar(0x2421);
    }
    return text;
}

/// The lines of a text from the one that begins at \p begin; none if that is -1.
QString linesAt(QByteArrayView text, qint64 begin, int count = 1)
{
    QStringList lines;
    if (begin >= 0) {
        // No more than is shown: a search for a line end that is not there would go to the end.
        const QByteArrayView rest = text.sliced(begin);
        LineReader reader(rest.first(std::min(rest.size(), count * (4 * MaxTextSize + 1))));
        while (lines.size() < count && !reader.atEnd())
            lines.append(shown(reader.readLine()));
    }
    return lines.join(u'\n');
}

/// What the bytes of the whole file were.
QString encodingBefore(const Preparation &preparation, bool hasReturns)
{
    QStringList parts{encodingName(preparation.encoding.encoding)};
    if (preparation.hasMark)
        parts += Preparation::tr("marque en tête");
    if (hasReturns)
        parts += Preparation::tr("fins de ligne avec CR");
    return parts.join(u", "_s);
}

/// Why, for an occurrence of which more can be said than for all of its kind.
QString whyOf(const Occurrence &occurrence, const Preparation &preparation)
{
    const QString &why = findingType(occurrence.finding).why;
    if (occurrence.finding == Finding::Encoding && occurrence.before >= 0 && occurrence.detail != 0)
        return Preparation::tr(
            "Un caractère que CONC coupait en deux est remis entier, au début de la ligne CONC.");
    if (occurrence.finding != Finding::Undecoded)
        return why;
    const Undecoded &place = preparation.undecoded.at(occurrence.detail);
    return Preparation::tr("Colonne %1, %2. %3")
        .arg(QString::number(place.column), QString::fromLatin1(place.bytes.toHex(' ').toUpper()),
             why);
}

QList<FindingType> makeTypes()
{
    const auto repair = FindingKind::Repair;
    const auto onRequest = FindingKind::RepairOnRequest;
    const auto warning = FindingKind::Warning;
    const auto tr = [](const char *text) { return Preparation::tr(text); };
    return {
        {Finding::Encoding, repair, u"codage"_s, tr("Texte mis en UTF-8"),
         tr("Varlune lit et écrit de l'UTF-8 ; HEAD.CHAR doit le dire aux autres logiciels.")},
        {Finding::Layout, repair, u"mise-en-forme"_s,
         tr("Lignes vides, retraits, tabulations, zéros de tête du niveau"),
         tr("Varlune veut le niveau au début de la ligne, puis un blanc et la balise.")},
        {Finding::NoLevel, repair, u"sans-niveau"_s, tr("Lignes sans niveau, rendues à leur texte"),
         tr("Une ligne sans niveau arrête la lecture ; elle continue le texte d'avant.")},
        {Finding::SkippedLevel, repair, u"niveau-saute"_s, tr("Niveaux sautés"),
         tr("Une ligne sans ligne du niveau au-dessus arrête la lecture.")},
        {Finding::LoneLine, repair, u"fiche-seule"_s, tr("Fiches d'une seule ligne"),
         tr("Une fiche d'une seule ligne arrête la lecture.")},
        {Finding::EmptyNote, repair, u"note-vide"_s, tr("Notes partagées vides suivies de CONC"),
         tr("Varlune joindrait le texte à la balise : NOTEtexte.")},
        {Finding::GluedNote, repair, u"note-collee"_s, tr("Texte collé à la balise NOTE"),
         tr("Aucun logiciel n'y reconnaît une note.")},
        {Finding::Trailer, repair, u"fin"_s, tr("Ligne finale 0 TRLR absente ou mal placée"),
         tr("Varlune prend la dernière ligne pour la fin du fichier et ne la garde pas.")},
        {Finding::Control, repair, u"controle"_s, tr("Caractères de contrôle retirés"),
         tr("Un tel caractère n'est pas du texte ; souvent il reste d'un transfert raté.")},
        {Finding::DeepLevelFolded, onRequest, u"niveaux-profonds"_s,
         tr("Niveaux à deux chiffres, repliés dans la ligne de niveau 9"),
         tr("Varlune ne lit qu'un chiffre de niveau.")},
        {Finding::Identifier, onRequest, u"identifiants"_s,
         tr("Identifiants mis sous la forme @I1@, @F1@, @S1@, @O1@, @R1@"),
         tr("Les liens, les filtres et les médias de Varlune demandent cette forme.")},
        {Finding::Undecoded, warning, u"octets"_s, tr("Octets qui ne sont d'aucun caractère"),
         tr("Le codage est peut-être un autre, ou le fichier est abîmé à cet endroit.")},
        {Finding::DeepLevel, warning, u"niveau-profond"_s, tr("Niveaux à deux chiffres"),
         tr("Varlune n'en garde que le premier chiffre, dès l'ouverture.")},
        {Finding::LongLine, warning, u"ligne-longue"_s, tr("Lignes de plus de 255 caractères"),
         tr("Varlune les coupera par CONC à chaque enregistrement.")},
        {Finding::CitationLevel, warning, u"citation"_s,
         tr("Citations de source à un autre niveau que 2"),
         tr("Les liens et les filtres de Varlune ne voient que les citations de niveau 2.")},
        {Finding::InlineMedia, warning, u"media-sans-fiche"_s, tr("Médias sans fiche"),
         tr("Les médias de Varlune sont des fiches ; celui-ci reste comme il est.")},
        {Finding::IdentifierForm, warning, u"forme-identifiant"_s,
         tr("Identifiants d'une autre forme que @I1@, @F1@, @S1@, @O1@, @R1@"),
         tr("Les liens, les filtres et les médias de Varlune ne voient pas cette fiche.")},
        {Finding::UnknownRecord, warning, u"fiche-inconnue"_s, tr("Fiches d'un genre inconnu"),
         tr("Varlune en fera une fiche qu'il ne reconnaît pas ; c'est peut-être un texte qui "
            "commence par 0, ou du texte derrière la balise.")},
        {Finding::SmallTag, warning, u"balise-minuscule"_s, tr("Balises en minuscules"),
         tr("Varlune ne reconnaît que les balises en capitales.")},
        {Finding::GluedText, warning, u"conc-sous-fiche"_s, tr("Fiches continuées par CONC"),
         tr("Varlune joindra ce texte à la balise de la fiche quand il repliera les CONC.")},
        {Finding::GluedPointer, warning, u"conc-sous-pointeur"_s,
         tr("Renvois à une fiche, continués par CONC"),
         tr("Varlune joindra ce texte au renvoi, qui ne mènera plus à sa fiche.")},
        {Finding::MisreadLine, warning, u"ligne-mal-lue"_s, tr("Lignes que Varlune lira mal"),
         tr("Varlune prend un chiffre, passe le caractère qui suit et va au blanc d'après.")},
        {Finding::LostLine, warning, u"ligne-perdue"_s, tr("Dernière ligne perdue"),
         tr("Varlune prend la dernière ligne pour la fin du fichier et ne la garde pas.")},
        {Finding::DeclaredEncoding, warning, u"codage-annonce"_s,
         tr("HEAD.CHAR annonce un autre codage"),
         tr("La copie est en UTF-8 ; les autres logiciels liront mal ses accents.")},
    };
}

} // namespace

const QList<FindingType> &findingTypes()
{
    static const QList<FindingType> types = makeTypes();
    return types;
}

const FindingType &findingType(Finding finding)
{
    return findingTypes().at(int(finding));
}

std::optional<Finding> repairFromName(QStringView name)
{
    const QList<FindingType> &types = findingTypes();
    const auto found = std::find_if(types.begin(), types.end(), [name](const FindingType &type) {
        return type.kind != FindingKind::Warning
            && name.compare(type.name, Qt::CaseInsensitive) == 0;
    });
    return found == types.end() ? std::nullopt : std::optional(found->finding);
}

FindingSet defaultRepairs()
{
    FindingSet repairs;
    for (const FindingType &type : findingTypes())
        repairs.set(type.finding, type.kind == FindingKind::Repair);
    return repairs;
}

OccurrenceText textOf(const Occurrence &occurrence, const Preparation &preparation)
{
    OccurrenceText text;
    text.line = occurrence.line;
    text.why = whyOf(occurrence, preparation);
    if (occurrence.before < 0 && occurrence.after < 0) {
        text.before = encodingBefore(preparation, occurrence.detail != 0);
        text.after = encodingName(Encoding::Utf8);
        return text;
    }
    text.before = linesAt(preparation.source, occurrence.before);
    text.after = linesAt(preparation.copy, occurrence.after, occurrence.linesAfter);
    return text;
}
