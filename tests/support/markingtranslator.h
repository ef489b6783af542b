#ifndef MARKINGTRANSLATOR_H
#define MARKINGTRANSLATOR_H

#include <QTranslator>

/// Translates every text of the program into its context and itself while it lives.
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
