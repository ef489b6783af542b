#include "inputs.h"

#include <QFile>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int LinkedLines = 8; // for each media

const QString &pick(const QStringList &list, int i)
{
    return list.at(i % list.size());
}

const QStringList &givenNames()
{
    static const QStringList list{u"Jean"_s,  u"Anne"_s,   u"Yves"_s, u"Marguerite"_s,
                                  u"Hervé"_s, u"Jeanne"_s, u"Louis"_s};
    return list;
}

const QStringList &surnames()
{
    static const QStringList list{u"MARTIN"_s, u"LE GOFF"_s, u"QUÉMÉNER"_s, u"ABGRALL"_s,
                                  u"MOREL"_s};
    return list;
}

const QStringList &months()
{
    static const QStringList list{u"JAN"_s, u"MAR"_s, u"JUN"_s, u"SEP"_s, u"DEC"_s};
    return list;
}

constexpr int Years = 100; // that events and sources are spread over

int yearOf(int i)
{
    return 1750 + i % Years;
}

/// The date of an event, in one of 50 a year that its sources do not have.
QString date(int event)
{
    const int year = yearOf(event) + (event % 50 == 7 ? 3 : 0);
    return u"%1 %2 %3"_s.arg(event % 28 + 1).arg(pick(months(), event)).arg(year);
}

void open(QFile *file)
{
    if (!file->open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file->fileName()));
}

/// Ends a file that must be whole, or what follows would be measured on a part of it.
void close(QFile *file, QTextStream *out)
{
    out->flush();
    if (out->status() != QTextStream::Ok || !file->flush())
        qFatal("cannot write the whole of %s", qPrintable(file->fileName()));
}

void writePerson(QTextStream &out, int person, int sources)
{
    const bool odd = person % 2 != 0;
    out << "0 @I" << person << "@ INDI\n1 NAME " << pick(givenNames(), person) << (odd ? "/" : " /")
        << pick(surnames(), person) << "/\n1 SEX " << (odd ? "M" : "F") << "\n";
    int event = person * 5;
    for (const char *tag : {"BIRT", "CHR", "OCCU", "RESI", "DEAT"}) {
        out << "1 " << tag << "\n2 DATE " << date(event)
            << "\n2 PLAC Saint-Thégonnec,29410,Finistère,Bretagne,France\n";
        for (int i = 0; i < 2; ++i) {
            out << "2 SOUR @S" << (event + i * Years) % sources << "@\n3 PAGE vue "
                << (event + i) % 300 << "\n";
        }
        ++event;
    }
    if (odd) {
        out << "1 _UID 5D3A" << person << "\n1 NOTE Registre de la paroisse, vue" << person
            << ", acte illisible par endroits.\n";
        const int pieces = person % 4 == 1 ? 5 : 6;
        for (int i = 0; i < pieces; ++i)
            out << "2 CONC  Le parrain est oncle maternel de l'enfant, la marraine sa tante.\n";
    } else {
        out << "1 TITL Meunier à Hanvec\n1 NOTE Voir https://www.archives.test/acte?id=" << person
            << " au folio 12.\n";
    }
    out << "1 FAMS @F" << (person + 1) / 2 << "@\n";
}

void writeFamily(QTextStream &out, int lines)
{
    // A block is two persons, a family, two sources and a media. The sources are a multiple of the
    // years, so that those of an event have its year, whatever the size of the file.
    const int blocks = std::max(1, lines / 100 / (Years / 2)) * (Years / 2);
    for (int person = 1; person <= 2 * blocks; ++person)
        writePerson(out, person, 2 * blocks);
    for (int family = 1; family <= blocks; ++family) {
        out << "0 @F" << family << "@ FAM\n1 HUSB @I" << 2 * family - 1 << "@\n1 WIFE @I"
            << 2 * family << "@\n";
    }
    for (int source = 0; source < 2 * blocks; ++source) {
        out << "0 @S" << source << "@ SOUR\n1 TITL Baptêmes, " << source << "\n1 DATE "
            << yearOf(source) << "\n";
        if (source % 2 == 0)
            out << "1 OBJE @O" << source / 2 + 1 << "@\n";
    }
    for (int media = 1; media <= blocks; ++media)
        out << "0 @O" << media << "@ OBJE\n1 FILE medias/acte_" << media << ".jpg\n1 FORM jpg\n";
}

void writePeople(QTextStream &out, int lines)
{
    for (int person = 1; person <= lines / 3; ++person) {
        out << "0 @I" << person << "@ INDI\n1 NAME " << pick(givenNames(), person) << "/"
            << pick(surnames(), person) << "/\n1 NOTE https://www.archives.test/acte?id=" << person
            << "\n";
    }
}

void writeMedia(QTextStream &out, int lines)
{
    for (int media = 1; media <= lines / 2; ++media)
        out << "0 @O" << media << "@ OBJE\n1 FILE medias/acte_" << media << ".jpg\n";
}

void writeLinked(QTextStream &out, int lines, bool notes)
{
    const int count = linkedMedia(lines);
    for (int i = 1; i <= count; ++i) {
        out << "0 @I" << i << "@ INDI\n1 BIRT\n2 SOUR @S" << i << "@\n";
        if (notes)
            out << "2 NOTE Source : https://partage.test/s/\n3 CONC ancien_" << i << ".jpg\n";
        else
            out << "2 DATE 12 MAR 1805\n";
    }
    for (int i = 1; i <= count; ++i)
        out << "0 @S" << i << "@ SOUR\n1 OBJE @O" << i << "@\n";
    for (int i = 1; i <= count; ++i)
        out << "0 @O" << i << "@ OBJE\n1 FILE C:\\medias\\acte_" << i << ".jpg\n";
}

void writeOneRecord(QTextStream &out, int lines)
{
    out << "0 @N1@ NOTE\n1 CONT Registre\n";
    for (int i = 0; i < lines; ++i)
        out << "2 CONT ligne " << i << "\n";
}

void writeEvents(QTextStream &out, int lines)
{
    out << "0 @I1@ INDI\n1 NAME Jean /MARTIN/\n";
    for (int i = 0; i < lines / 2; ++i)
        out << "1 EVEN\n2 DATE " << date(i) << "\n";
}

void writeLongLines(QTextStream &out, int lines)
{
    const QString text = u"Le parrain est oncle maternel de l'enfant. "_s.repeated(10);
    out << "0 @N1@ NOTE\n1 CONT Registre\n";
    for (int i = 0; i < lines; ++i)
        out << "2 CONT " << text << i << "\n";
}

void writeCitations(QTextStream &out, int lines)
{
    const int sources = std::max(1, lines / 18 / Years) * Years; // two lines, and ten citations
    for (int person = 0; person < sources; ++person) {
        out << "0 @I" << person << "@ INDI\n1 NAME Jean /MARTIN/\n";
        for (int i = 0; i < 10; ++i) {
            if (i % 5 == 0)
                out << (i == 0 ? "1 BIRT" : "1 DEAT") << "\n2 DATE " << date(person) << "\n";
            out << "2 SOUR @S" << (person + i * Years) % sources << "@\n";
        }
    }
    for (int source = 0; source < sources; ++source)
        out << "0 @S" << source << "@ SOUR\n1 DATE " << yearOf(source) << "\n";
}

} // namespace

int linkedMedia(int lines)
{
    return std::max(1, lines / LinkedLines);
}

void writeInput(const QString &path, Shape shape, int lines)
{
    QFile file(path);
    QTextStream out(&file);
    open(&file);
    out << "0 HEAD\n1 SOUR VARLUNE\n1 GEDC\n2 VERS 5.5.1\n1 CHAR UTF-8\n";
    switch (shape) {
    case Shape::Family:
        writeFamily(out, lines);
        break;
    case Shape::People:
        writePeople(out, lines);
        break;
    case Shape::Media:
        writeMedia(out, lines);
        break;
    case Shape::Linked:
        writeLinked(out, lines, false);
        break;
    case Shape::LinkedNotes:
        writeLinked(out, lines, true);
        break;
    case Shape::OneRecord:
        writeOneRecord(out, lines);
        break;
    case Shape::Events:
        writeEvents(out, lines);
        break;
    case Shape::LongLines:
        writeLongLines(out, lines);
        break;
    case Shape::Citations:
        writeCitations(out, lines);
        break;
    }
    out << "0 TRLR\n";
    close(&file, &out);
}

void writeCorrespondences(const QString &path, int count, const QString &name)
{
    QFile file(path);
    QTextStream out(&file);
    open(&file);
    for (int i = 1; i <= count; ++i) {
        const QString number = QString::number(i);
        out << QString(name).replace("%1"_L1, number) << ".jpg,https://partage.test/s/" << number
            << ".jpg\n";
    }
    close(&file, &out);
}
