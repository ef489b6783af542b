#ifndef FENAPROPOS_H
#define FENAPROPOS_H

#include <QWidget>

/// The About box; also the one source of the program's name and version.
class FenAPropos : public QWidget
{
    Q_OBJECT

public:
    /// The box, not yet shown. It is modal to \p parent alone and has the size of its content.
    explicit FenAPropos(QWidget *parent);

    [[nodiscard]] static QString getVersion();
    [[nodiscard]] static QString getAppName();
};

#endif // FENAPROPOS_H
