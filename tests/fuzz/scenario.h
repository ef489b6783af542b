#ifndef SCENARIO_H
#define SCENARIO_H

#include <QByteArray>
#include <QStringList>

/// Plays what \p input says: loads a file, works on it with other operations inside, saves and
/// reloads it. Returns what is broken, a text for each fault. Any bytes are an input; README.md
/// tells how they are read.
[[nodiscard]] QStringList playScenario(const QByteArray &input);

#endif // SCENARIO_H
