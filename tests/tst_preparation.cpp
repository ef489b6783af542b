#include "preparation.h"

#include "boxes.h"
#include "document.h"
#include "nofiles.h"
#include "output.h"
#include "preparationreport.h"
#include "proof.h"
#include "testmain.h"
#include "unprivileged.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

Options optionsOf(const QStringList &with, const QStringList &without)
{
    Options options;
    options.today = QDate(2024, 3, 5);
    for (const QString &name : with)
        options.repairs.set(*repairFromName(name));
    for (const QString &name : without)
        options.repairs.set(*repairFromName(name), false);
    return options;
}

/// The counts that are not 0, as "name 2".
QStringList countsOf(const Preparation &preparation)
{
    QStringList counts;
    for (const FindingType &type : findingTypes()) {
        if (preparation.count(type.finding) > 0)
            counts += type.name + u' ' + QString::number(preparation.count(type.finding));
    }
    return counts;
}

/// The occurrences, as "3 blancs: before > after".
QStringList occurrencesOf(const Preparation &preparation)
{
    QStringList texts;
    for (const Occurrence &occurrence : preparation.occurrences) {
        const OccurrenceText text = textOf(occurrence, preparation);
        texts +=
            u"%1 %2: %3 > %4"_s.arg(QString::number(text.line),
                                    findingType(occurrence.finding).name, text.before, text.after);
    }
    return texts;
}

/// A file of these lines between a header and a trailer that need no repair.
QByteArray fileOf(const QByteArray &lines)
{
    return "0 HEAD\n1 CHAR UTF-8\n" + lines + "0 TRLR\n";
}

QString refusalOf(const QByteArray &bytes)
{
    return prepare(bytes, {}).refusal;
}

} // namespace

class TstPreparation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void repairs_data();
    void repairs();
    void warnings_data();
    void warnings();
    void occurrences_data();
    void occurrences();
    void foldedOccurrences();
    void encodings_data();
    void encodings();
    void highControls();
    void identifiers();
    void identifiersThatAreFree();
    void oddIdentifiers_data();
    void oddIdentifiers();
    void proof_data();
    void proof();
    void verdicts();
    void refusals_data();
    void refusals();
    void forcedEncoding();
    void refusedPaths();
    void tooLarge();
    void longLine();
    void cancelled();
    void types();
    void copyPaths_data();
    void copyPaths();
    void saving();
    void savingOverAnOpenFile();
    void neverTheInput_data();
    void neverTheInput();
    void impossibleCopies();
    void table();
    void reports();
    void reasons();
};

void TstPreparation::initTestCase()
{
    QLoggingCategory::setFilterRules(u"*.debug=false"_s);
}

void TstPreparation::repairs_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QStringList>("counts");

    const auto row = [](const char *name, const char *lines, const char *expected,
                        const QStringList &counts) {
        QTest::newRow(name) << fileOf(lines) << fileOf(expected) << counts;
    };
    row("nothing to do", "0 @I1@ INDI\n1 NAME Jean /DUPONT/\n",
        "0 @I1@ INDI\n1 NAME Jean /DUPONT/\n", {});
    row("values keep their blanks and tabs", "0 @I1@ INDI\n1 NOTE  a\tb \n2 CONT \n",
        "0 @I1@ INDI\n1 NOTE  a\tb \n2 CONT \n", {});

    row("blank lines", "\n0 @I1@ INDI\n \t\n1 SEX M\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 2"_s});
    row("indentation", " 0 @I1@ INDI\n\t1 SEX M\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 2"_s});
    row("a mark in the middle",
        "\xEF\xBB\xBF"
        "0 @I1@ INDI\n1 SEX M\n",
        "0 @I1@ INDI\n1 SEX M\n", {u"mise-en-forme 1"_s});
    row("tabs between the parts", "0\t@I1@\tINDI\n1\tSEX\tM\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 2"_s});
    row("too many blanks", "0  @I1@  INDI\n1  SEX M\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 2"_s});
    row("leading zeros", "00 @I1@ INDI\n01 SEX M\n002 NOTE x\n", "0 @I1@ INDI\n1 SEX M\n2 NOTE x\n",
        {u"mise-en-forme 3"_s});
    row("a blank behind a kind of record", "0 @I1@ INDI \n1 SEX M\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 1"_s});
    row("no blank behind an identifier", "0 @I1@INDI\n1 SEX M\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 1"_s});

    row("a broken note", "0 @I1@ INDI\n1 NOTE <p>un\n<b>deux</b>\n  trois\n1 SEX M\n",
        "0 @I1@ INDI\n1 NOTE <p>un\n2 CONT <b>deux</b>\n2 CONT   trois\n1 SEX M\n",
        {u"sans-niveau 2"_s});
    row("a broken continuation", "0 @I1@ INDI\n1 NOTE un\n2 CONC deux\ntrois\n2 CONT quatre\n",
        "0 @I1@ INDI\n1 NOTE un\n2 CONC deux\n2 CONT trois\n2 CONT quatre\n", {u"sans-niveau 1"_s});
    row("a text that begins with a number",
        "0 @I1@ INDI\n1 NOTE un\n1850 naissance\n12 rue du Port\n",
        "0 @I1@ INDI\n1 NOTE un\n2 CONT 1850 naissance\n2 CONT 12 rue du Port\n",
        {u"sans-niveau 2"_s});
    row("a number alone", "0 @I1@ INDI\n1 NOTE un\n2\n0\n",
        "0 @I1@ INDI\n1 NOTE un\n2 CONT 2\n2 CONT 0\n", {u"sans-niveau 2"_s});
    row("a text that begins with 0", "0 @I1@ INDI\n1 NOTE un\n0 euros\n",
        "0 @I1@ INDI\n1 NOTE un\n2 CONT 0 euros\n", {u"sans-niveau 1"_s});
    row("below a record", "0 @I1@ INDI\nun\n", "0 @I1@ INDI\n1 CONT un\n", {u"sans-niveau 1"_s});
    row("a number and words in capitals in a broken note",
        "0 @I1@ INDI\n1 NOTE <p>Domicile\n12 RUE DU PORT\n3 MARS 1850</p>\n",
        "0 @I1@ INDI\n1 NOTE <p>Domicile\n2 CONT 12 RUE DU PORT\n2 CONT 3 MARS 1850</p>\n",
        {u"sans-niveau 2"_s});
    row("behind each kind of text",
        "0 @N1@ NOTE a\n3 FILS\n1 CONC b\n4 FILLES\n1 CONT c\n5 ANS\n1 CHAN\n"
        "0 @S1@ SOUR\n1 TEXT d\n6 RUE X\n0 @N2@ SNOTE e\n7 MOIS\n",
        "0 @N1@ NOTE a\n1 CONT 3 FILS\n1 CONC b\n1 CONT 4 FILLES\n1 CONT c\n1 CONT 5 ANS\n1 CHAN\n"
        "0 @S1@ SOUR\n1 TEXT d\n2 CONT 6 RUE X\n0 @N2@ SNOTE e\n1 CONT 7 MOIS\n",
        {u"sans-niveau 5"_s});
    row("a blank line in a broken note", "0 @I1@ INDI\n1 NOTE <p>un\n\ndeux</p>\n",
        "0 @I1@ INDI\n1 NOTE <p>un\n2 CONT deux</p>\n", {u"mise-en-forme 1"_s, u"sans-niveau 1"_s});

    row("a line of marks alone", "0 @I1@ INDI\n1 SEX M\n\xEF\xBB\xBF\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"mise-en-forme 1"_s});
    row("a level below a folded line", "0 @N1@ NOTE\n1 CONC a\n2 SOUR @S1@\n",
        "0 @N1@ NOTE a\n1 SOUR @S1@\n", {u"niveau-saute 1"_s, u"note-vide 1"_s});

    row("skipped levels", "0 @I1@ INDI\n2 SEX M\n1 BIRT\n4 DATE 1900\n",
        "0 @I1@ INDI\n1 SEX M\n1 BIRT\n2 DATE 1900\n", {u"niveau-saute 2"_s});
    row("brothers and children of a skipped level",
        "0 @I1@ INDI\n1 BIRT\n3 DATE 1900\n3 PLAC Brest\n4 NOTE x\n2 SOUR @S1@\n",
        "0 @I1@ INDI\n1 BIRT\n2 DATE 1900\n2 PLAC Brest\n3 NOTE x\n2 SOUR @S1@\n",
        {u"niveau-saute 3"_s});
    row("skipped levels behind a text",
        "0 @I1@ INDI\n1 NOTE a\n3 SOUR @S1@\n1 NOTE b\n2 CONT c\n4 _TAG d\n",
        "0 @I1@ INDI\n1 NOTE a\n2 SOUR @S1@\n1 NOTE b\n2 CONT c\n3 _TAG d\n",
        {u"niveau-saute 2"_s});
    row("a tag of one's own that skips a level elsewhere",
        "0 @I1@ INDI\n1 BIRT\n4 LIEU Brest\n1 EVEN\n3 MARS x\n",
        "0 @I1@ INDI\n1 BIRT\n2 LIEU Brest\n1 EVEN\n2 MARS x\n", {u"niveau-saute 2"_s});

    row("a record of one line", "0 @N1@ NOTE court\n0 @U1@ SUBM\n",
        "0 @N1@ NOTE court\n1 CHAN\n2 DATE 5 MAR 2024\n0 @U1@ SUBM\n1 CHAN\n2 DATE 5 MAR 2024\n",
        {u"fiche-seule 2"_s});
    row("a submission of one line", "0 @B1@ SUBN\n", "0 @B1@ SUBN\n1 RIN 1\n",
        {u"fiche-seule 1"_s});
    row("an unknown record of one line", "0 _PUBLISH\n", "0 _PUBLISH\n1 CHAN\n2 DATE 5 MAR 2024\n",
        {u"fiche-seule 1"_s});

    row("records with something behind the tag of the trailer",
        "0 TRLR fin\n0 @T1@ TRLR\n0 TRLR \n",
        "0 TRLR fin\n1 CHAN\n2 DATE 5 MAR 2024\n0 @T1@ TRLR\n1 CHAN\n2 DATE 5 MAR 2024\n",
        {u"fiche-seule 2"_s, u"fin 1"_s});

    row("an empty note that goes on", "0 @N1@ NOTE\n1 CONC texte\n1 CONC suite\n",
        "0 @N1@ NOTE texte\n1 CONC suite\n", {u"note-vide 1"_s});
    row("with empty continuations", "0 @N1@ NOTE \n1 CONC\n1 CONC  x\n1 CONT y\n",
        "0 @N1@ NOTE  x\n1 CONT y\n", {u"note-vide 2"_s});
    row("which is then of one line", "0 @N1@ NOTE\n1 CONC texte\n",
        "0 @N1@ NOTE texte\n1 CHAN\n2 DATE 5 MAR 2024\n", {u"fiche-seule 1"_s, u"note-vide 1"_s});
    row("an empty note that has text in CONT", "0 @N1@ NOTE\n1 CONT a\n1 CONC b\n",
        "0 @N1@ NOTE\n1 CONT a\n1 CONC b\n", {});
    row("a private record", "0 @L1@ _LIEU\n1 CONC Brest\n1 MAP\n", "0 @L1@ _LIEU Brest\n1 MAP\n",
        {u"note-vide 1"_s});

    row("text glued to the tag", "0 @N1@ NOTEtexte libre\n1 CONT a\n",
        "0 @N1@ NOTE texte libre\n1 CONT a\n", {u"note-collee 1"_s});
    row("markup glued to the tag", "0 @N1@ NOTE<p>texte\n1 CONT a\n",
        "0 @N1@ NOTE <p>texte\n1 CONT a\n", {u"note-collee 1"_s});

    row("control characters",
        "0 @I1@ INDI\n1 NAME J\x01"
        "ean\x7F\n",
        "0 @I1@ INDI\n1 NAME Jean\n", {u"controle 1"_s});
    QTest::newRow("a zero byte") << fileOf("0 @I1@ INDI\n1 NAME J\0ean\n"_ba)
                                 << fileOf("0 @I1@ INDI\n1 NAME Jean\n")
                                 << QStringList{u"controle 1"_s};
    row("a line of control characters", "0 @I1@ INDI\n1 SEX M\n\x1A\n", "0 @I1@ INDI\n1 SEX M\n",
        {u"controle 1"_s});

    const QByteArray person = "0 @I1@ INDI\n1 SEX M\n";
    const QByteArray header = "0 HEAD\n1 CHAR UTF-8\n";
    QTest::newRow("no trailer") << header + person << header + person + "0 TRLR\n"
                                << QStringList{u"fin 1"_s};
    QTest::newRow("no end of the last line")
        << header + person.chopped(1) << header + person + "0 TRLR\n"
        << QStringList{u"fin 1"_s};
    QTest::newRow("lines behind the trailer")
        << header + "0 TRLR\n" + person << header + person + "0 TRLR\n"
        << QStringList{u"fin 1"_s};
    QTest::newRow("two trailers") << header + "0 TRLR\n" + person + "0 TRLR\n"
                                  << header + person + "0 TRLR\n"
                                  << QStringList{u"fin 1"_s};
    QTest::newRow("a trailer in small letters") << header + person + "0 trlr\n"
                                                << header + person + "0 TRLR\n"
                                                << QStringList{u"fin 1"_s};
    QTest::newRow("a blank line behind the trailer") << header + person + "0 TRLR\n\n"
                                                     << header + person + "0 TRLR\n"
                                                     << QStringList{u"mise-en-forme 1"_s};

    QTest::newRow("no header") << person + "0 TRLR\n"
                               << header + person + "0 TRLR\n"
                               << QStringList{u"codage 2"_s};
    QTest::newRow("lines in front of the header")
        << QByteArray("bonjour\n0 HEAD\n1 CHAR UTF-8\n0 TRLR\n")
        << QByteArray("0 HEAD\n1 CONT bonjour\n1 CHAR UTF-8\n0 TRLR\n")
        << QStringList{u"mise-en-forme 1"_s, u"sans-niveau 1"_s};
    QTest::newRow("a trailer in front of the header")
        << QByteArray("0 TRLR\n0 HEAD\n1 CHAR UTF-8\n")
        << QByteArray("0 HEAD\n1 CHAR UTF-8\n0 TRLR\n") << QStringList{u"fin 1"_s};
    QTest::newRow("a trailer in front of them, too")
        << QByteArray("0 TRLR\n1 SOUR x\n0 HEAD\n1 CHAR UTF-8\n")
        << QByteArray("0 HEAD\n1 SOUR x\n1 CHAR UTF-8\n0 TRLR\n")
        << QStringList{u"mise-en-forme 1"_s, u"fin 1"_s};
    QTest::newRow("a header of one line") << QByteArray("0 HEAD\n0 TRLR\n") << header + "0 TRLR\n"
                                          << QStringList{u"codage 1"_s};
}

void TstPreparation::repairs()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, expected);
    QFETCH(QStringList, counts);

    const Preparation preparation = prepare(lines, optionsOf({}, {}));
    QCOMPARE(preparation.refusal, QString());
    QCOMPARE(preparation.copy, expected);
    QCOMPARE(countsOf(preparation), counts);
    QVERIFY(preparation.proof.opens());

    const Preparation again = prepare(preparation.copy, optionsOf({}, {}));
    QCOMPARE(again.copy, expected);
    QCOMPARE(countsOf(again), QStringList());
}

void TstPreparation::warnings_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("with");
    QTest::addColumn<QStringList>("without");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QStringList>("counts");

    const auto row = [](const char *name, const QByteArray &lines, const QString &count) {
        QTest::newRow(name) << fileOf(lines) << QStringList() << QStringList() << fileOf(lines)
                            << QStringList{count};
    };
    QByteArray deep = "0 @I1@ INDI\n";
    for (char level = '1'; level <= '9'; ++level)
        deep += level + QByteArray(" NOTE x\n");
    row("levels of two digits", deep + "10 CONT y\n11 NOTE z\n", u"niveau-profond 2"_s);
    row("a line of 256 characters", "0 @I1@ INDI\n1 NOTE " + QByteArray(249, 'x') + '\n',
        u"ligne-longue 1"_s);
    row("of two bytes each", "0 @I1@ INDI\n1 NOTE " + QByteArray("é").repeated(249) + '\n',
        u"ligne-longue 1"_s);
    row("of two units each, as Varlune counts", // 132 characters
        "0 @I1@ INDI\n1 NOTE " + QByteArray("😀").repeated(125) + '\n', u"ligne-longue 1"_s);
    row("a citation of a record", "0 @I1@ INDI\n1 SOUR @S1@\n", u"citation 1"_s);
    row("a citation of a citation", "0 @F1@ FAM\n1 MARR\n2 PLAC x\n3 SOUR @S1@\n", u"citation 1"_s);
    row("a medium without a record", "0 @I1@ INDI\n1 OBJE\n2 FILE a.jpg\n",
        u"media-sans-fiche 1"_s);
    row("identifiers of another form", "0 @P1@ INDI\n1 SEX M\n0 @3F@ FAM\n1 HUSB @P1@\n",
        u"forme-identifiant 2"_s);
    row("damaged identifiers", "0 @I1 INDI\n1 SEX M\n0 @@ INDI\n1 SEX M\n0 I2@ INDI\n1 SEX M\n",
        u"forme-identifiant 3"_s);
    row("a pointer that goes on in CONC",
        "0 @I1@ INDI\n1 BIRT\n2 SOUR @S1@\n2 CONC b\n1 FAMS @F1@ \n2 CONC c\n1 NOTE x\n"
        "2 CONT @F1@\n2 CONC d\n",
        u"conc-sous-pointeur 2"_s);
    row("a citation with a blank behind it", "0 @I1@ INDI\n1 SOUR @S1@ \n", u"citation 1"_s);
    row("a text that begins with 0 and a word in capitals", "0 KG a la naissance\n1 NOTE x\n",
        u"fiche-inconnue 1"_s);
    row("text behind the tag of a person", "0 @I1@ INDI x\n1 SEX M\n0 FAM x\n1 MARR\n",
        u"fiche-inconnue 2"_s);
    row("small letters", "0 @I1@ INDI\n1 name Jean\n", u"balise-minuscule 1"_s);
    row("a person that goes on in CONC", "0 @I1@ INDI\n1 CONC x\n", u"conc-sous-fiche 1"_s);

    QTest::newRow("255 characters")
        << fileOf("0 @I1@ INDI\n1 NOTE " + QByteArray(248, 'x') + '\n') << QStringList()
        << QStringList() << fileOf("0 @I1@ INDI\n1 NOTE " + QByteArray(248, 'x') + '\n')
        << QStringList();
    QTest::newRow("124 of two units each")
        << fileOf("0 @I1@ INDI\n1 NOTE " + QByteArray("😀").repeated(124) + '\n') << QStringList()
        << QStringList() << fileOf("0 @I1@ INDI\n1 NOTE " + QByteArray("😀").repeated(124) + '\n')
        << QStringList();
    const QByteArray tail = QByteArray(260, 'x') + "\n1 CONC b\n";
    QTest::newRow("256 characters once the line is joined")
        << fileOf("0 @N1@ NOTE\n1 CONC " + tail) << QStringList() << QStringList()
        << fileOf("0 @N1@ NOTE " + tail) << QStringList({u"note-vide 1"_s, u"ligne-longue 1"_s});
    QTest::newRow("levels folded on request")
        << fileOf(deep + "10 CONT y\n10 CONC z\n10 @X@ NOTE\n11 PAGE 3\nfin\n1 SEX M\n")
        << QStringList{u"niveaux-profonds"_s} << QStringList()
        << fileOf(deep.chopped(1) + " yz @X@ NOTE PAGE 3 fin\n1 SEX M\n")
        << QStringList{u"niveaux-profonds 5"_s};
    QTest::newRow("folded into a line without a value")
        << fileOf(deep.chopped(3) + "\n10 CONC a\n") << QStringList{u"niveaux-profonds"_s}
        << QStringList() << fileOf(deep.chopped(3) + " a\n")
        << QStringList{u"niveaux-profonds 1"_s};
    const QByteArray header = "0 HEAD\n1 CHAR UTF-8\n";
    QTest::newRow("below a record with the tag of a continuation")
        << fileOf("0 CONT x\nun\n") << QStringList() << QStringList()
        << fileOf("0 CONT x\n1 CONT un\n")
        << QStringList({u"sans-niveau 1"_s, u"fiche-inconnue 1"_s});
    const QByteArray numbers = "0 @I1@ INDI\n1 NOTE x\n1914 guerre\n";
    QTest::newRow("a text that begins with a number")
        << fileOf(numbers) << QStringList() << QStringList{u"sans-niveau"_s} << fileOf(numbers)
        << QStringList{u"ligne-mal-lue 1"_s};
    const QByteArray blanks = "0 @I1@ INDI \n1  SEX M\n1\tNAME x\n1 NOTE  x\n";
    QTest::newRow("blanks too many")
        << fileOf(blanks) << QStringList() << QStringList{u"mise-en-forme"_s} << fileOf(blanks)
        << QStringList{u"ligne-mal-lue 3"_s};
    QTest::newRow("a last line that is lost")
        << header + "1 NOTE x\n"
        << QStringList() << QStringList{u"fin"_s} << header + "1 NOTE x\n"
        << QStringList{u"ligne-perdue 1"_s};
    QTest::newRow("another encoding announced")
        << QByteArray("0 HEAD\n1 CHAR ANSEL\n2 VERS 1\n0 TRLR\n") << QStringList()
        << QStringList{u"codage"_s} << QByteArray("0 HEAD\n1 CHAR ANSEL\n2 VERS 1\n0 TRLR\n")
        << QStringList{u"codage-annonce 1"_s};
    QTest::newRow("which is still decoded")
        << "0 HEAD\r\n1 CHAR ANSI\r\n0 @I1@ INDI\r\n1 NAME Ren\xE9\r\n0 TRLR\r\n"_ba
        << QStringList() << QStringList{u"codage"_s}
        << "0 HEAD\n1 CHAR ANSI\n0 @I1@ INDI\n1 NAME René\n0 TRLR\n"_ba
        << QStringList({u"codage 1"_s, u"codage-annonce 1"_s});
    QTest::newRow("a header of one line without a character set")
        << "0 HEAD\n0 TRLR\n"_ba << QStringList() << QStringList{u"codage"_s}
        << "0 HEAD\n1 DATE 5 MAR 2024\n0 TRLR\n"_ba << QStringList{u"fiche-seule 1"_s};
    const QByteArray notes = "0 @N1@ NOTE\n1 CONC a\n0 @N2@ NOTEb\n1 CONT \x01\n";
    QTest::newRow("notes and control characters left alone")
        << fileOf(notes) << QStringList()
        << QStringList({u"note-vide"_s, u"note-collee"_s, u"controle"_s}) << fileOf(notes)
        << QStringList({u"balise-minuscule 1"_s, u"conc-sous-fiche 1"_s});
}

void TstPreparation::warnings()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, with);
    QFETCH(QStringList, without);
    QFETCH(QByteArray, expected);
    QFETCH(QStringList, counts);

    const Preparation preparation = prepare(lines, optionsOf(with, without));
    QCOMPARE(preparation.copy, expected);
    QCOMPARE(countsOf(preparation), counts);
    QVERIFY(preparation.proof.opens());
    bool isWarning = false;
    for (const FindingType &type : findingTypes())
        isWarning =
            isWarning || (type.kind == FindingKind::Warning && preparation.count(type.finding) > 0);
    QCOMPARE(preparation.hasWarnings(), isWarning);
}

void TstPreparation::occurrences_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("in the order of the file, with their lines")
        << QByteArray("0 HEAD\r\n1 CHAR ANSI\r\n2 VERS 1\r\n\r\n 0 @I1@ INDI\r\n1 NOTE a\r\nb\r\n"
                      "3 SOUR x\r\n0 @N1@ NOTE\r\n1 CONC c")
        << QStringList{u"1 codage: UTF-8, fins de ligne avec CR > UTF-8"_s,
                       u"2 codage: 1 CHAR ANSI > 1 CHAR UTF-8"_s,
                       u"3 codage: 2 VERS 1 > "_s,
                       u"4 mise-en-forme:  > "_s,
                       u"5 mise-en-forme:  0 @I1@ INDI > 0 @I1@ INDI"_s,
                       u"7 sans-niveau: b > 2 CONT b"_s,
                       u"8 niveau-saute: 3 SOUR x > 2 SOUR x"_s,
                       u"10 note-vide: 1 CONC c > 0 @N1@ NOTE c"_s,
                       u"9 fiche-seule: 0 @N1@ NOTE > 0 @N1@ NOTE c\n1 CHAN\n2 DATE 5 MAR 2024"_s,
                       u"9 fin:  > 0 TRLR"_s};
    QTest::newRow("of a whole file")
        << QByteArray("\xEF\xBB\xBF"
                      "0 @I1@ INDI\n1 SEX M\n0 TRLR\n0 @I2@ INDI\n1 SEX F\n")
        << QStringList{u"1 codage: UTF-8, marque en tête > UTF-8"_s, u"1 codage:  > 0 HEAD"_s,
                       u"1 codage:  > 1 CHAR UTF-8"_s, u"3 fin: 0 TRLR > 0 TRLR"_s};
    QTest::newRow("control characters by their pictures")
        << fileOf("0 @I1@ INDI\n1 NAME \x02J\x7F\n")
        << QStringList{u"4 controle: 1 NAME ␂J␡ > 1 NAME J"_s};
    QTest::newRow("long lines cut")
        << fileOf("0 @I1@ INDI\n1 NOTE " + QByteArray(400, 'x') + '\n')
        << QStringList{u"4 ligne-longue: 1 NOTE %1… > 1 NOTE %1…"_s.arg(QString(292, u'x'))};
    QTest::newRow("a note glued to its tag")
        << fileOf("0 @N1@ NOTEa\n1 CONT b\n")
        << QStringList{u"3 note-collee: 0 @N1@ NOTEa > 0 @N1@ NOTE a"_s};
    QTest::newRow("an undecoded byte and a medium")
        << fileOf("0 @I1@ INDI\n1 NOTE éé\n1 OBJE\n2 FILE \xE9\n")
        << QStringList({u"5 media-sans-fiche: 1 OBJE > 1 OBJE"_s,
                        u"6 octets: 2 FILE <E9> > 2 FILE <E9>"_s});
    QTest::newRow("undecoded bytes in front of a late header")
        << "André Désir\xE9\nligne\n0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n1 SEX M\n0 TRLR\n"_ba
        << QStringList({u"3 mise-en-forme: 0 HEAD > 0 HEAD"_s,
                        u"1 octets: André Désir<E9> > 1 CONT André Désir<E9>"_s,
                        u"1 sans-niveau: André Désir<E9> > 1 CONT André Désir<E9>"_s,
                        u"2 sans-niveau: ligne > 1 CONT ligne"_s});
    QTest::newRow("undecoded bytes in a first line without a header")
        << "0 @I1@ INDI\xE9\n1 NAME André Désiré\n0 TRLR\n"_ba
        << QStringList({u"1 codage:  > 0 HEAD"_s, u"1 codage:  > 1 CHAR UTF-8"_s,
                        u"1 octets: 0 @I1@ INDI<E9> > 0 @I1@ INDI<E9>"_s});
    QTest::newRow("characters that a continuation cuts in two")
        << fileOf("0 @I1@ INDI\n1 NOTE D\xC3\xA9sir\xC3\n2 CONC \xA9 ou Ren\xC3\n2 CONC \xA9\n1 "
                  "SEX M\n")
        << QStringList({u"4 codage: 1 NOTE Désir > 1 NOTE Désir"_s,
                        u"5 codage: 2 CONC é ou Ren > 2 CONC é ou Ren"_s,
                        u"6 codage: 2 CONC é > 2 CONC é"_s});
    QTest::newRow("a control character behind a record of one line")
        << fileOf("0 @N1@ NOTE x\n0 @I1@ INDI\x01\n1 SEX M\n")
        << QStringList(
               {u"3 fiche-seule: 0 @N1@ NOTE x > 0 @N1@ NOTE x\n1 CHAN\n2 DATE 5 MAR 2024"_s,
                u"4 controle: 0 @I1@ INDI␁ > 0 @I1@ INDI"_s});
    const QByteArray head = "0 HEAD\n1 CHAR UTF-8\n";
    QTest::newRow("a control character in the trailer behind a record of one line")
        << head + "0 @N1@ NOTE x\n0 TRLR\x1A\n\n"
        << QStringList(
               {u"5 mise-en-forme:  > "_s,
                u"3 fiche-seule: 0 @N1@ NOTE x > 0 @N1@ NOTE x\n1 CHAN\n2 DATE 5 MAR 2024"_s,
                u"4 controle: 0 TRLR␚ > 0 TRLR"_s});
    QTest::newRow("a control character in a trailer that is moved")
        << head + "0 @I1@ INDI\n1 NOTE a\n0 TRLR\x1A\n0 @I2@ INDI\x01\n1 SEX F\n"
        << QStringList({u"5 controle: 0 TRLR␚ > 0 TRLR"_s, u"5 fin: 0 TRLR␚ > 0 TRLR"_s,
                        u"6 controle: 0 @I2@ INDI␁ > 0 @I2@ INDI"_s});
}

void TstPreparation::occurrences()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, expected);

    QCOMPARE(occurrencesOf(prepare(file, optionsOf({}, {}))), expected);
}

void TstPreparation::foldedOccurrences()
{
    QByteArray deep = "0 @I1@ INDI\n";
    for (char level = '1'; level <= '9'; ++level)
        deep += level + QByteArray(" NOTE x\n");
    const Preparation preparation =
        prepare(fileOf(deep + "10 CONT y\nz\n"), optionsOf({u"niveaux-profonds"_s}, {}));
    QCOMPARE(occurrencesOf(preparation),
             QStringList({u"13 niveaux-profonds: 10 CONT y > 9 NOTE x y z"_s,
                          u"14 niveaux-profonds: z > 9 NOTE x y z"_s}));
}

void TstPreparation::encodings_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QStringList>("counts");

    const QByteArray text = "0 HEAD\n1 CHAR %\n0 @I1@ INDI\n1 NAME Ren\xE9 /LEGU\xC9/\n0 TRLR\n";
    const auto row = [&](const char *name, const QByteArray &lineEnd) {
        QTest::newRow(name) << QByteArray(text).replace('%', "ANSI").replace("\n", lineEnd)
                            << u"Windows-1252"_s << QStringList{u"codage 2"_s};
    };
    row("LF", "\n");
    row("CR LF", "\r\n");
    row("CR", "\r");
    QTest::newRow("Windows-1252 that is called ISO 8859-1")
        << QByteArray(text)
               .replace('%', "ISO-8859-1")
               .replace("0 TRLR", "1 NOTE l\x92"
                                  "an\n0 TRLR")
        << u"Windows-1252"_s << QStringList{u"codage 2"_s};
    const QString utf16 = u"0 HEAD\n1 CHAR UNICODE\n0 @I1@ INDI\n1 NAME René /LEGUÉ/\n0 TRLR\n"_s;
    const QByteArray little(reinterpret_cast<const char *>(utf16.utf16()), 2 * utf16.size());
    QTest::newRow("UTF-16 with a mark")
        << "\xFF\xFE" + little << u"UTF-16LE"_s << QStringList{u"codage 2"_s};
    QTest::newRow("UTF-16 without a mark") << little << u"UTF-16LE"_s << QStringList{u"codage 2"_s};
    QTest::newRow("half a character at the end")
        << little + QByteArray("x\0\x3D\xD8", 4) << u"UTF-16LE"_s
        << QStringList{u"codage 2"_s, u"sans-niveau 1"_s, u"fin 1"_s, u"octets 1"_s};
    QTest::newRow("UTF-8 that says something else")
        << QByteArray("0 HEAD\n1 CHAR ANSEL\n2 VERS ANSI\n3 NOTE x\n0 @I1@ INDI\n"
                      "1 NAME René /LEGUÉ/\n0 TRLR\n")
        << u"UTF-8"_s << QStringList{u"codage 3"_s};
    QTest::newRow("a version that goes on")
        << QByteArray("0 HEAD\n1 CHAR ANSEL\n2 VERS 5\n2 CONT b\nc\n0 @I1@ INDI\n"
                      "1 NAME René /LEGUÉ/\n0 TRLR\n")
        << u"UTF-8"_s << QStringList{u"codage 4"_s};
    QTest::newRow("a name that goes on")
        << QByteArray("0 HEAD\n1 CHAR ANSEL\n2 CONC x\ny\n2 CONT z\n3 NOTE n\n0 @I1@ INDI\n"
                      "1 NAME René /LEGUÉ/\n0 TRLR\n")
        << u"UTF-8"_s << QStringList{u"codage 5"_s};
    QTest::newRow("UTF-8 that goes on")
        << QByteArray("0 HEAD\n1 CHAR UTF-8\n2 CONC x\n0 @I1@ INDI\n1 NAME René /LEGUÉ/\n0 TRLR\n")
        << u"UTF-8"_s << QStringList{u"codage 1"_s};
}

void TstPreparation::encodings()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, encoding);
    QFETCH(QStringList, counts);

    const Preparation preparation = prepare(file, {});
    QCOMPARE(encodingName(preparation.encoding.encoding), encoding);
    QVERIFY(
        preparation.copy.startsWith("0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n1 NAME René /LEGUÉ/\n"));
    QVERIFY(preparation.copy.endsWith("\n0 TRLR\n"));
    QCOMPARE(countsOf(preparation), counts);
}

/// Control characters from 0x80 on stand in the copy by their bytes, and are told.
void TstPreparation::highControls()
{
    const QString text = u"0 HEAD\n1 CHAR UTF-8\n1 NOTE n\u00B0 a\u0092b\u009F\n0 TRLR\n"_s;
    const Preparation utf8 = prepare(text.toUtf8(), {});
    QCOMPARE(utf8.copy, "0 HEAD\n1 CHAR UTF-8\n1 NOTE n\xC2\xB0 a<C292>b<C29F>\n0 TRLR\n");
    QCOMPARE(countsOf(utf8), QStringList{u"octets 2"_s});
    QCOMPARE(utf8.undecoded.constFirst().line, 3);
    QCOMPARE(utf8.undecoded.constFirst().column, 12);

    const QByteArray little(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
    const Preparation utf16 = prepare(little, {});
    QCOMPARE(utf16.copy, "0 HEAD\n1 CHAR UTF-8\n1 NOTE n\xC2\xB0 a<9200>b<9F00>\n0 TRLR\n");
    QCOMPARE(countsOf(utf16), QStringList({u"codage 1"_s, u"octets 2"_s}));
}

void TstPreparation::identifiers()
{
    const QByteArray file = fileOf("0 @3I@ INDI\n1 FAMS @4F@\n1 NOTE voir @3I@\n1 BIRT\n2 DATE "
                                   "@#DJULIAN@ 1 JAN 1700\n0 @4F@ FAM\n1 HUSB @3I@\n1 WIFE @I3@\n"
                                   "0 @xy@ SOUR\n1 TITL t\n0 @S1@ SOUR\n1 TITL u\n0 @M07@ OBJE\n"
                                   "1 FILE a\n0 @R@ REPO\n1 NAME n\n0 @N1@ NOTE x\n1 CHAN\n"
                                   "0 @M@ SUBM\n1 NAME m\n0 @L@ _LIEU\n1 MAP\n");
    const QByteArray expected = fileOf(
        "0 @I1@ INDI\n1 FAMS @F4@\n1 NOTE voir @3I@\n1 BIRT\n2 DATE @#DJULIAN@ 1 JAN 1700\n"
        "0 @F4@ FAM\n1 HUSB @I1@\n1 WIFE @I3@\n0 @S2@ SOUR\n1 TITL t\n0 @S1@ SOUR\n1 TITL u\n"
        "0 @O7@ OBJE\n1 FILE a\n0 @R1@ REPO\n1 NAME n\n0 @N1@ NOTE x\n1 CHAN\n0 @U1@ SUBM\n"
        "1 NAME m\n0 @X1@ _LIEU\n1 MAP\n");
    const Preparation preparation = prepare(file, optionsOf({u"identifiants"_s}, {}));
    QCOMPARE(preparation.copy, expected);
    // @I3@ is not free: a pointer that leads nowhere says it.
    QCOMPARE(countsOf(preparation), QStringList{u"identifiants 9"_s});
    QByteArray table;
    for (const RenamedIdentifier &renamed : preparation.identifiers)
        table += renamed.before + ' ' + renamed.after + '\n';
    QCOMPARE(table, "@3I@ @I1@\n@4F@ @F4@\n@xy@ @S2@\n@M07@ @O7@\n@R@ @R1@\n@M@ @U1@\n@L@ @X1@\n");

    const Preparation again = prepare(expected, optionsOf({u"identifiants"_s}, {}));
    QCOMPARE(again.copy, expected);
    QVERIFY(again.identifiers.isEmpty());
}

void TstPreparation::identifiersThatAreFree()
{
    // Both would like to be @I5@.
    const QByteArray file = fileOf("0 @P5@ INDI\n1 SEX M\n0 @5@ INDI\n1 ALIA @P5@\n");
    QCOMPARE(prepare(file, optionsOf({u"identifiants"_s}, {})).copy,
             fileOf("0 @I5@ INDI\n1 SEX M\n0 @I1@ INDI\n1 ALIA @I5@\n"));
}

void TstPreparation::oddIdentifiers_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QByteArray>("table");

    QTest::newRow("blanks around a pointer")
        << QByteArray("0 @p1@ INDI\n1 SEX M\n0 @f1@ FAM\n1 WIFE  @p1@\n1 HUSB \t@p1@ \t\n")
        << QByteArray("0 @I1@ INDI\n1 SEX M\n0 @F1@ FAM\n1 WIFE  @I1@\n1 HUSB \t@I1@ \t\n")
        << QByteArray("@p1@ @I1@\n@f1@ @F1@\n");
    QTest::newRow("a pointer that leads nowhere, with a blank behind it")
        << QByteArray("0 @p1@ INDI\n1 ALIA @I1@ \n") << QByteArray("0 @I2@ INDI\n1 ALIA @I1@ \n")
        << QByteArray("@p1@ @I2@\n");
    QTest::newRow("a text that looks like a pointer")
        << QByteArray("0 @p1@ INDI\n1 NOTE @p1@\n2 CONT @p1@\n1 NOTE x\n2 CONC @p1@\n")
        << QByteArray("0 @I1@ INDI\n1 NOTE @I1@\n2 CONT @p1@\n1 NOTE x\n2 CONC @p1@\n")
        << QByteArray("@p1@ @I1@\n");
    QTest::newRow("a note whose text is glued to the tag")
        << QByteArray("0 @z@ NOTEa\n1 CONT b\n") << QByteArray("0 @N1@ NOTE a\n1 CONT b\n")
        << QByteArray("@z@ @N1@\n");
    QTest::newRow("control characters in an identifier")
        << QByteArray("0 @p\x01"
                      "9@ INDI\n1 ALIA @p9\x02@\n")
        << QByteArray("0 @I9@ INDI\n1 ALIA @I9@\n") << QByteArray("@p9@ @I9@\n");
}

void TstPreparation::oddIdentifiers()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, expected);
    QFETCH(QByteArray, table);

    const Options options = optionsOf({u"identifiants"_s}, {});
    const Preparation preparation = prepare(fileOf(lines), options);
    QCOMPARE(preparation.copy, fileOf(expected));
    QByteArray renamed;
    for (const RenamedIdentifier &identifier : preparation.identifiers)
        renamed += identifier.before + ' ' + identifier.after + '\n';
    QCOMPARE(renamed, table);
    QCOMPARE(prepare(preparation.copy, options).copy, preparation.copy);
}

void TstPreparation::proof_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("the last line is not read") << QByteArray("0 HEAD\n1 CHAR x\n9 zzz\n");
    QTest::newRow("a record of one line") << QByteArray("0 HEAD\n1 CHAR x\n0 @N1@ NOTE\n0 TRLR\n");
    QTest::newRow("at the end") << QByteArray("0 HEAD\n0 TRLR\n");
    QTest::newRow("a level too deep") << QByteArray("0 HEAD\n1 CHAR x\n3 y\n0 TRLR\n");
    QTest::newRow("below an earlier line") << QByteArray("0 A\n1 A\n2 B\n1 C\n3 D\n0 TRLR\n");
    QTest::newRow("a blank line") << QByteArray("0 HEAD\n1 CHAR x\n\n0 TRLR\n");
    QTest::newRow("behind the trailer") << QByteArray("0 HEAD\n1 CHAR x\n0 TRLR\n\n");
    QTest::newRow("an indented line") << QByteArray("0 HEAD\n 1 CHAR x\n0 TRLR\n");
    QTest::newRow("another zero") << QByteArray("0 HEAD\n1 CHAR x\n00 x\n0 TRLR\n");
    QTest::newRow("a zero alone") << QByteArray("0 HEAD\n1 CHAR x\n0\n0 TRLR\n");
    QTest::newRow("two digits") << QByteArray("0 HEAD\n1 CHAR x\n20 x\n0 TRLR\n");
    QTest::newRow("two digits below") << QByteArray("0 HEAD\n1 A\n19 x\n25 y\n0 TRLR\n");
    QTest::newRow("no level 0") << QByteArray("1 HEAD\n1 CHAR x\n0 TRLR\n");
    QTest::newRow("no end") << QByteArray("0 HEAD\n1 CHAR x\n0 @I1@ INDI\n1 SEX M");
}

void TstPreparation::proof()
{
    QFETCH(QByteArray, text);

    const Proof proof = proveOpening(text);
    const AnsweredBoxes boxes;
    Document doc;
    writeBytes(doc.path(), text);
    QCOMPARE(proof.opens(), doc.loadFile());
    QCOMPARE(proof.records, doc.gedcom.getTabTwItemsRoot().size());
    if (!proof.opens())
        QVERIFY(boxes.texts().constFirst().contains(proof.stoppingText));
}

void TstPreparation::verdicts()
{
    const QByteArray file = "0 HEAD\n1 CHAR UTF-8\n\n0 @I1@ INDI\n1 SEX M\n0 TRLR\n";
    QCOMPARE(prepare(file, {}).verdict(), u"Varlune ouvrira ce fichier : 2 enregistrements"_s);
    QCOMPARE(prepare("0 HEAD\n0 TRLR", {}).verdict(),
             u"Varlune ouvrira ce fichier : 1 enregistrement"_s);

    const Preparation stopped =
        prepare("0 HEAD\n1 CHAR UTF-8\n0 @N1@ NOTE x\n0 TRLR\n", optionsOf({}, {u"fiche-seule"_s}));
    QVERIFY(stopped.hasWarnings());
    QCOMPARE(stopped.verdict(),
             u"Varlune n'ouvrira pas ce fichier : la ligne 3 l'arrête : 0 @N1@ NOTE x"_s);
}

void TstPreparation::refusals_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("begin");

    QByteArray noise;
    quint32 state = 1;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525 + 1013904223;
        noise += char(state >> 24);
    }
    QTest::newRow("empty") << QByteArray() << u"Ce fichier est vide. Refaites l'export"_s;
    QTest::newRow("blank") << QByteArray(" \r\n\n") << u"Ce fichier est vide. Refaites l'export"_s;
    QTest::newRow("zip") << QByteArray("PK\x03\x04\x14")
                         << u"Ce fichier est une archive ZIP (GEDZIP) et non un texte GEDCOM. "
                            "Extrayez-en"_s;
    QTest::newRow("empty zip") << "PK\x05\x06"_ba + QByteArray(18, '\0')
                               << u"Ce fichier est une archive ZIP (GEDZIP)"_s;
    QTest::newRow("gzip") << QByteArray("\x1F\x8B\x08") << u"Ce fichier est une archive gzip"_s;
    QTest::newRow("PDF") << QByteArray("%PDF-1.4\n")
                         << u"Ce fichier est un document PDF et non un texte GEDCOM. Exportez"_s;
    QTest::newRow("picture") << QByteArray("\xFF\xD8\xFF\xE0") << u"Ce fichier est une image"_s;
    QTest::newRow("encrypted text") << QByteArray("-----BEGIN PGP MESSAGE-----\n\nhQEMA0 x\n")
                                    << u"Ce fichier est chiffré. Déchiffrez-le"_s;
    QTest::newRow("encrypted text behind a mark")
        << "\uFEFF-----BEGIN PGP MESSAGE-----\n"_ba << u"Ce fichier est chiffré."_s;
    QTest::newRow("encrypted text behind a blank line")
        << "\r\n-----BEGIN PGP MESSAGE-----\r\n"_ba << u"Ce fichier est chiffré."_s;
    QTest::newRow("text that age has encrypted")
        << "-----BEGIN AGE ENCRYPTED FILE-----\nYWdl\n"_ba << u"Ce fichier est chiffré."_s;
    QTest::newRow("noise") << noise << u"Ce fichier est binaire ou chiffré"_s;
    QTest::newRow("noise behind a mark")
        << "\xEF\xBB\xBF\xFF"_ba + noise.left(5000) << u"Ce fichier est binaire ou chiffré"_s;
    QTest::newRow("bytes of no character") << "\uFEFF0 HEAD\n1 NOTE "_ba.leftJustified(200, '\x81')
                                           << u"Ce fichier est binaire ou chiffré"_s;
    QTest::newRow("control characters in UTF-16")
        << "\xFF\xFE"_ba + "0\0 \0H\0E\0A\0D\0 \0a\0b\0c\0d\0e\0\x01\0\n\0"_ba.repeated(10)
        << u"Ce fichier est binaire ou chiffré"_s;
    QTest::newRow("zeros") << QByteArray(5000, '\0')
                           << u"Ce fichier n'est pas un texte GEDCOM : aucune ligne"_s;
    QTest::newRow("markup") << QByteArray("<!DOCTYPE html>\n<p>0 HEAD</p>\n")
                            << u"Ce fichier est une page HTML ou un document XML"_s;
    QTest::newRow("markup in UTF-16")
        << "\xFF\xFE\n\0<\0p\0>\0"_ba << u"Ce fichier est une page HTML ou un document XML"_s;
    QTest::newRow("prose that begins with a byte of no character")
        << "\x81 bonjour ch\xE8re tante Ren\xE9\x65\n"_ba
        << u"Ce fichier n'est pas un texte GEDCOM : aucune ligne"_s;
    QTest::newRow("prose") << QByteArray("Chère tante,\n1 fois encore\n0 euros\n")
                           << u"Ce fichier n'est pas un texte GEDCOM : aucune ligne"_s;
    QTest::newRow("lines without a record")
        << QByteArray("1 NAME Jean\n2 GIVN Jean\n")
        << u"Ce fichier n'est pas un texte GEDCOM : aucune ligne"_s;
    QTest::newRow("a trailer alone")
        << QByteArray("0 TRLR\n") << u"Ce fichier n'est pas un texte GEDCOM : aucune ligne"_s;
}

void TstPreparation::refusals()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, begin);

    const Preparation preparation = prepare(bytes, {});
    QVERIFY2(preparation.refusal.startsWith(begin), qPrintable(preparation.refusal));
    QVERIFY(preparation.refusal.endsWith(u'.'));
    QVERIFY(!preparation.isDone());
    QCOMPARE(preparation.copy, QByteArray());
    QCOMPARE(occurrencesOf(preparation), QStringList());
    QCOMPARE(countsOf(preparation), QStringList());
}

/// What does not decode in an encoding that the user has chosen says nothing of the file.
void TstPreparation::forcedEncoding()
{
    Options options = optionsOf({}, {});
    options.encoding = Encoding::Utf8;
    const Preparation preparation =
        prepare("0 HEAD\n0 @I1@ INDI\n1 NAME " + QByteArray("\xE9").repeated(100) + '\n', options);
    QCOMPARE(preparation.refusal, QString());
    QCOMPARE(preparation.count(Finding::Undecoded), 100);
}

void TstPreparation::refusedPaths()
{
    const QTemporaryDir folder;
    const auto refusal = [&folder](const QString &name) {
        return prepareFile(folder.filePath(name), {}).refusal.remove(folder.path() + u'/');
    };
    QCOMPARE(refusal(u"absent.ged"_s),
             u"« absent.ged » n'existe pas. Vérifiez le nom et le dossier."_s);
    QVERIFY(QDir(folder.path()).mkdir(u"dossier.ged"_s));
    QCOMPARE(refusal(u"dossier.ged"_s),
             u"« dossier.ged » est un dossier. Choisissez un fichier .ged."_s);
    SKIP_ON_WINDOWS(NoSuchFiles);
    makePipe(folder.filePath(u"tube.ged"_s));
    QCOMPARE(refusal(u"tube.ged"_s),
             u"« tube.ged » n'est pas un fichier ordinaire. Choisissez un fichier .ged."_s);

    writeBytes(folder.filePath(u"secret.ged"_s), fileOf({}));
    QVERIFY(QFile::setPermissions(folder.filePath(u"secret.ged"_s), QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7777)));
    const Unprivileged unprivileged;
    QCOMPARE(refusal(u"secret.ged"_s),
             u"« secret.ged » ne peut pas être lu. Vérifiez vos droits sur le fichier et que le "
             "disque répond."_s);
}

void TstPreparation::tooLarge()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"enorme.ged"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(2'000'000'000)); // a hole: it takes no room
    const QString refusal = prepareFile(file.fileName(), {}).refusal;
    QVERIFY2(refusal.endsWith(u"enorme.ged » fait 2,0 Go, trop pour que Varlune l'ouvre. Exportez "
                              "l'arbre en plusieurs fichiers, par branche, de 1 Go au plus."_s),
             qPrintable(refusal));
}

void TstPreparation::longLine()
{
    constexpr int Size = 20'000'000;
    const QByteArray file = fileOf("0 @N1@ NOTE " + QByteArray(Size, 'x') + "\n1 CHAN\n");
    const Preparation preparation = prepare(file, {});
    QCOMPARE(preparation.copy.size(), file.size());
    QVERIFY(preparation.copy == file);
    QCOMPARE(countsOf(preparation), QStringList{u"ligne-longue 1"_s});
    QCOMPARE(refusalOf(QByteArray(Size, 'x')).left(38),
             u"Ce fichier n'est pas un texte GEDCOM :"_s);
}

void TstPreparation::cancelled()
{
    const QByteArray file = fileOf(QByteArray("0 @I1@ INDI\n1 SEX M\n").repeated(1000));
    int calls = 0;
    qint64 last = -1;
    const Preparation whole = prepare(file, {}, [&](qint64 done, qint64 total) {
        ++calls;
        if (done <= last || done >= total || total != file.size())
            return false;
        last = done;
        return true;
    });
    QVERIFY(whole.isDone());
    QVERIFY2(calls > 100 && calls < 500, qPrintable(QString::number(calls)));

    const Preparation stopped =
        prepare(file, {}, [&](qint64 done, qint64 total) { return done < total / 2; });
    QVERIFY(stopped.cancelled);
    QVERIFY(!stopped.isDone());
    QCOMPARE(stopped.copy, QByteArray());
    QCOMPARE(occurrencesOf(stopped), QStringList());
}

void TstPreparation::types()
{
    QCOMPARE(findingTypes().size(), FindingCount);
    QStringList names;
    for (int i = 0; i < FindingCount; ++i) {
        const FindingType &type = findingTypes().at(i);
        QCOMPARE(int(type.finding), i);
        QVERIFY(!type.name.isEmpty() && !type.title.isEmpty() && !names.contains(type.name));
        QVERIFY2(type.why.endsWith(u'.'), qPrintable(type.why));
        QCOMPARE(defaultRepairs().contains(type.finding), type.kind == FindingKind::Repair);
        QCOMPARE(repairFromName(type.name.toUpper()).has_value(),
                 type.kind != FindingKind::Warning);
        names += type.name;
    }
    QVERIFY(!repairFromName(u"autre"_s));
}

void TstPreparation::copyPaths_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("copy");

    QTest::newRow("beside") << u"/gen/arbre.ged"_s << u"/gen/arbre.prepare.ged"_s;
    QTest::newRow("relative") << u"arbre.ged"_s << u"./arbre.prepare.ged"_s;
    QTest::newRow("other suffix") << u"/gen/a.b.TXT"_s << u"/gen/a.b.prepare.TXT"_s;
    QTest::newRow("no suffix") << u"/gen/arbre"_s << u"/gen/arbre.prepare.ged"_s;
    QTest::newRow("hidden") << u"/gen/.arbre"_s << u"/gen/.arbre.prepare.ged"_s;
}

void TstPreparation::copyPaths()
{
    QFETCH(QString, input);
    QFETCH(QString, copy);

    QCOMPARE(copyPath(input), copy);
    if (input.startsWith(u'/'))
        QVERIFY(identifiersPath(copy).endsWith(".identifiants.csv"_L1));
}

void TstPreparation::saving()
{
    const QTemporaryDir folder;
    const QString input = folder.filePath(u"arbre.ged"_s);
    const QString copy = copyPath(input);
    const QByteArray bytes = " 0 HEAD\r\n0 TRLR\r\n";
    writeBytes(input, bytes);

    const Preparation preparation = prepareFile(input, {});
    QCOMPARE(writtenFiles(preparation, copy), QStringList{copy});
    QCOMPARE(saveCopy(preparation, input, copy), QString());
    QCOMPARE(readBytes(copy), "0 HEAD\n1 CHAR UTF-8\n0 TRLR\n");
    QCOMPARE(readBytes(input), bytes);

    // One that is there is replaced.
    QCOMPARE(saveCopy(prepare("0 HEAD\n1 DATE x\n0 TRLR\n", {}), input, copy), QString());
    QCOMPARE(readBytes(copy), "0 HEAD\n1 DATE x\n1 CHAR UTF-8\n0 TRLR\n");
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({u"arbre.ged"_s, u"arbre.prepare.ged"_s}));
}

/// Whoever has the former copy open keeps it as it was.
void TstPreparation::savingOverAnOpenFile()
{
    const QTemporaryDir folder;
    const QString input = folder.filePath(u"arbre.ged"_s);
    const QString copy = copyPath(input);
    writeBytes(input, fileOf({}));
    writeBytes(copy, "ancien");
    QFile former(copy);
    QVERIFY(former.open(QIODevice::ReadOnly));

    const QString problem = saveCopy(prepareFile(input, {}), input, copy);
#ifdef Q_OS_WIN // which lets nobody replace it meanwhile
    QVERIFY2(problem.contains(u" n'a pas pu être écrit ("_s), qPrintable(problem));
    QCOMPARE(readBytes(copy), "ancien");
#else
    QCOMPARE(problem, QString());
    QCOMPARE(readBytes(copy), fileOf({}));
#endif
    QCOMPARE(former.readAll(), "ancien");
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({u"arbre.ged"_s, u"arbre.prepare.ged"_s}));
}

void TstPreparation::neverTheInput_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("itself") << u"arbre.ged"_s;
    QTest::newRow("beside itself") << u"./arbre.ged"_s;
    QTest::newRow("by way of another folder") << u"autre/../arbre.ged"_s;
    QTest::newRow("second name") << u"jumeau.ged"_s;
    QTest::newRow("link") << u"lien.ged"_s;
    QTest::newRow("in a folder that is a link") << u"autre/lien/arbre.ged"_s;
}

void TstPreparation::neverTheInput()
{
    QFETCH(QString, name);

    const QTemporaryDir folder;
    const QString input = folder.filePath(u"arbre.ged"_s);
    const QByteArray bytes = " 0 HEAD\n0 TRLR\n";
    writeBytes(input, bytes);
    const QFileInfo twin(folder.filePath(u"jumeau.ged"_s));
    std::filesystem::create_hard_link(QFileInfo(input).filesystemFilePath(),
                                      twin.filesystemFilePath());
    QVERIFY(QDir(folder.path()).mkdir(u"autre"_s));
    if (name.contains("lien"_L1)) {
        SKIP_ON_WINDOWS(NoLinks);
        QVERIFY(QFile::link(input, folder.filePath(u"lien.ged"_s)));
        QVERIFY(QFile::link(folder.path(), folder.filePath(u"autre/lien"_s)));
    }

    const Preparation preparation = prepareFile(input, {});
    const QString copy = folder.filePath(name);
    QCOMPARE(saveCopy(preparation, input, copy),
             u"« %1 » est le fichier d'origine, qui n'est jamais modifié. Donnez un autre nom à "
             "la copie."_s.arg(copy));
    const ReportEntry entry{input, {}, {}, &preparation};
    QVERIFY(!saveReport(copy, ReportFormat::Text, entry).isEmpty());
    QCOMPARE(readBytes(input), bytes);
}

void TstPreparation::impossibleCopies()
{
    const QTemporaryDir folder;
    const QString input = folder.filePath(u"arbre.ged"_s);
    writeBytes(input, fileOf({}));
    QVERIFY(QDir(folder.path()).mkdir(u"dossier"_s));
    const Preparation preparation = prepareFile(input, {});
    const auto problem = [&](const QString &copy) {
        return saveCopy(preparation, input, copy).remove(folder.path() + u'/');
    };
    QCOMPARE(problem(folder.filePath(u"dossier"_s)),
             u"« dossier » n'est pas un fichier. Donnez un autre nom."_s);
    QVERIFY(problem(folder.filePath(u"absent/copie.ged"_s))
                .startsWith(u"« absent/copie.ged » n'a pas pu être écrit ("_s));
    QVERIFY(problem(folder.filePath(QString(300, u'x')))
                .endsWith(u"Vérifiez vos droits sur le dossier et la place sur le disque."_s));

    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"arbre.ged"_s});

    SKIP_ON_WINDOWS(NoRights);
    QVERIFY(QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner
                                                     | QFile::ReadOther | QFile::ExeOther));
    {
        const Unprivileged unprivileged;
        QVERIFY(problem(folder.filePath(u"copie.ged"_s))
                    .startsWith(u"« copie.ged » n'a pas pu être écrit ("_s));
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"arbre.ged"_s});
}

void TstPreparation::table()
{
    const QTemporaryDir folder;
    const QString input = folder.filePath(u"arbre.ged"_s);
    writeBytes(input, fileOf("0 @3I@ INDI\n1 SEX M\n0 @a;b@ INDI\n1 SEX M\n"
                             "0 @\"c\"@ INDI\n1 SEX M\n"));
    const Preparation preparation = prepareFile(input, optionsOf({u"identifiants"_s}, {}));
    const QByteArray rows = "ancien;nouveau\n@3I@;@I3@\n\"@a;b@\";@I1@\n\"@\"\"c\"\"@\";@I2@\n";
    const QString copy = copyPath(input);
    const QString table = folder.filePath(u"arbre.prepare.identifiants.csv"_s);
    QCOMPARE(writtenFiles(preparation, copy), QStringList({copy, table}));
    QCOMPARE(saveCopy(preparation, input, copy), QString());
    QCOMPARE(readBytes(table), rows);

    // The report does not take the place of the table.
    const ReportEntry entry{input, copy, {}, &preparation};
    QVERIFY(!saveReport(table, ReportFormat::Text, entry).isEmpty());
    QCOMPARE(readBytes(table), rows);

    // Without a table there is no copy.
    QVERIFY(QFile::remove(table) && QFile::remove(copy) && QDir(folder.path()).mkdir(table));
    QCOMPARE(saveCopy(preparation, input, copy),
             u"« %1 » n'est pas un fichier. Donnez un autre nom."_s.arg(table));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"arbre.ged"_s});
}

void TstPreparation::reports()
{
    const Preparation done = prepare("0 HEAD\n 1 CHAR UTF-8\n0 @P1@ INDI\n1 SEX M\n0 TRLR\n",
                                     optionsOf({u"identifiants"_s}, {}));
    const Preparation refused = prepare({}, {});
    const auto report = [&](ReportFormat format) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        ReportWriter writer(&buffer, format);
        writer.add({u"a.ged"_s, u"a.prepare.ged"_s, {}, &done});
        writer.add({u"b.ged"_s, {}, {}, &refused});
        if (!writer.finish())
            qFatal("the buffer does not take the report");
        return QString::fromUtf8(buffer.data());
    };
    QCOMPARE(report(ReportFormat::Text).split(u'\n'),
             QStringList({
                 u"Fichier : a.ged"_s,
                 u"Codage : UTF-8 (texte en ASCII pur)"_s,
                 u"Réparation : Lignes vides, retraits, tabulations, zéros de tête du niveau : 1"_s,
                 u"Réparation : Identifiants mis sous la forme @I1@, @F1@, @S1@, @O1@, @R1@ : 1"_s,
                 u"Varlune ouvrira ce fichier : 2 enregistrements"_s,
                 u"Copie : a.prepare.ged"_s,
                 u"l.2 mise-en-forme : «  1 CHAR UTF-8 » devient « 1 CHAR UTF-8 ». Varlune veut le "
                 "niveau au début de la ligne, puis un blanc et la balise."_s,
                 u"l.3 identifiants : « 0 @P1@ INDI » devient « 0 @I1@ INDI ». Les liens, les "
                 "filtres et les médias de Varlune demandent cette forme."_s,
                 u"@P1@ -> @I1@"_s,
                 u""_s,
                 u"Fichier : b.ged"_s,
                 u"Ce fichier est vide. Refaites l'export depuis votre logiciel de généalogie."_s,
                 u""_s,
                 u""_s,
             }));
    // A "`" stands for a quotation mark.
    QCOMPARE(report(ReportFormat::Json).replace(u'"', u'`').split(u'\n'),
             QStringList({
                 u"{`fichiers`:["_s,
                 u"{`bilan`:{`identifiants`:1,`mise-en-forme`:1},`codage`:`UTF-8`,`copie`:"
                 "`a.prepare.ged`,`enregistrements`:2,`fichier`:`a.ged`,`identifiants`:"
                 "[{`ancien`:`@P1@`,`nouveau`:`@I1@`}],`motif`:`texte en ASCII pur`,"
                 "`ouvre`:true,`verdict`:`Varlune ouvrira ce fichier : 2 enregistrements`,"
                 "`occurrences`:["_s,
                 u"{`apres`:`1 CHAR UTF-8`,`avant`:` 1 CHAR UTF-8`,`ligne`:2,`nature`:"
                 "`mise-en-forme`,`pourquoi`:`Varlune veut le niveau au début de la ligne, puis un "
                 "blanc et la balise.`},"_s,
                 u"{`apres`:`0 @I1@ INDI`,`avant`:`0 @P1@ INDI`,`ligne`:3,`nature`:"
                 "`identifiants`,`pourquoi`:`Les liens, les filtres et les médias de Varlune "
                 "demandent cette forme.`}]},"_s,
                 u"{`fichier`:`b.ged`,`refus`:`Ce fichier est vide. Refaites l'export depuis votre "
                 "logiciel de généalogie.`,`occurrences`:[]}"_s,
                 u"]}"_s,
                 u""_s,
             }));
}

/// The reasons that differ from one occurrence of a kind to the next.
void TstPreparation::reasons()
{
    Options options = optionsOf({}, {});
    options.encoding = Encoding::Utf8;
    const Preparation preparation = prepare(
        fileOf("0 @I1@ INDI\n1 NOTE é\n1 NOTE ab\xE9\x63\n1 NOTE Ren\xC3\n2 CONC \xA9\n"), options);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ReportWriter writer(&buffer, ReportFormat::Text);
    writer.add({u"a.ged"_s, {}, {}, &preparation});
    QVERIFY(writer.finish());
    const QString cut =
        u"Un caractère que CONC coupait en deux est remis entier, au début de la ligne CONC."_s;
    QCOMPARE(
        QString::fromUtf8(buffer.data()).split(u'\n').filter(u"l."_s),
        QStringList({u"l.5 octets : « 1 NOTE ab<E9>c ». Colonne 10, E9. Le codage est peut-être "
                     "un autre, ou le fichier est abîmé à cet endroit."_s,
                     u"l.6 codage : « 1 NOTE Ren » devient « 1 NOTE Ren ». "_s + cut,
                     u"l.7 codage : « 2 CONC é » devient « 2 CONC é ». "_s + cut}));
}

VARLUNE_TEST_MAIN(TstPreparation)
#include "tst_preparation.moc"
