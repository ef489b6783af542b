#ifndef MARKINGTRANSLATOR_H
#define MARKINGTRANSLATOR_H

#include <QTranslator>

/// While this object lives, translates every text of the program into "[Context]text".
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator();
    ~MarkingTranslator() override;
    Q_DISABLE_COPY_MOVE(MarkingTranslator)

    [[nodiscard]] QString translate(const char *context, const char *sourceText, const char *,
                                    int) const override;
    [[nodiscard]] bool isEmpty() const override
    {
        return false;
    }
};

#endif // MARKINGTRANSLATOR_H
