#ifndef STANDARDTAGS_H
#define STANDARDTAGS_H

#include <QByteArrayView>

/// Whether the standard has that tag, in GEDCOM 5.5.1 (its appendix A and its grammar) or in
/// FamilySearch GEDCOM 7.0.
[[nodiscard]] bool isStandardTag(QByteArrayView tag);

#endif // STANDARDTAGS_H
