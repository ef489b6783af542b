#include "standardtags.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

constexpr std::string_view Tags[] = { // sorted
    "ABBR",  "ADDR", "ADOP", "ADR1", "ADR2", "ADR3", "AFN",   "AGE",    "AGNC", "ALIA",  "ANCE",
    "ANCI",  "ANUL", "ASSO", "AUTH", "BAPL", "BAPM", "BARM",  "BASM",   "BIRT", "BLES",  "BLOB",
    "BURI",  "CALN", "CAST", "CAUS", "CENS", "CHAN", "CHAR",  "CHIL",   "CHR",  "CHRA",  "CITY",
    "CONC",  "CONF", "CONL", "CONT", "COPR", "CORP", "CREA",  "CREM",   "CROP", "CTRY",  "DATA",
    "DATE",  "DEAT", "DESC", "DESI", "DEST", "DIV",  "DIVF",  "DSCR",   "EDUC", "EMAIL", "EMIG",
    "ENDL",  "ENGA", "EVEN", "EXID", "FACT", "FAM",  "FAMC",  "FAMF",   "FAMS", "FAX",   "FCOM",
    "FILE",  "FONE", "FORM", "GEDC", "GIVN", "GRAD", "HEAD",  "HEIGHT", "HUSB", "IDNO",  "IMMI",
    "INDI",  "INIL", "LANG", "LATI", "LEFT", "LEGA", "LONG",  "MAP",    "MARB", "MARC",  "MARL",
    "MARR",  "MARS", "MEDI", "MIME", "NAME", "NATI", "NATU",  "NCHI",   "NICK", "NMR",   "NO",
    "NOTE",  "NPFX", "NSFX", "OBJE", "OCCU", "ORDI", "ORDN",  "PAGE",   "PEDI", "PHON",  "PHRASE",
    "PLAC",  "POST", "PROB", "PROP", "PUBL", "QUAY", "REFN",  "RELA",   "RELI", "REPO",  "RESI",
    "RESN",  "RETI", "RFN",  "RIN",  "ROLE", "ROMN", "SCHMA", "SDATE",  "SEX",  "SLGC",  "SLGS",
    "SNOTE", "SOUR", "SPFX", "SSN",  "STAE", "STAT", "SUBM",  "SUBN",   "SURN", "TAG",   "TEMP",
    "TEXT",  "TIME", "TITL", "TOP",  "TRAN", "TRLR", "TYPE",  "UID",    "VERS", "WIDTH", "WIFE",
    "WILL",  "WWW"};

} // namespace

bool isStandardTag(QByteArrayView tag)
{
    return std::binary_search(std::begin(Tags), std::end(Tags),
                              std::string_view(tag.data(), size_t(tag.size())));
}
