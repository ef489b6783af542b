#ifndef DEBUGLISTENER_H
#define DEBUGLISTENER_H

#include <QString>
#include <QtGlobal>

#include <functional>
#include <utility>

/// Passes each debug line to a function while this object lives.
class DebugListener
{
public:
    explicit DebugListener(std::function<void(const QString &)> hear)
    {
        s_hear = std::move(hear);
        s_previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
                if (type == QtDebugMsg)
                    s_hear(text);
                else
                    s_previous(type, context, text);
            });
    }
    ~DebugListener()
    {
        qInstallMessageHandler(s_previous);
        s_hear = nullptr;
    }
    Q_DISABLE_COPY_MOVE(DebugListener)

private:
    inline static std::function<void(const QString &)> s_hear;
    inline static QtMessageHandler s_previous = nullptr;
};

#endif // DEBUGLISTENER_H
