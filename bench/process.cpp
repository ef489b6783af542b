#include "process.h"

#include <QElapsedTimer>
#include <QTemporaryFile>

#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

ProcessCost runProcess(const QStringList &command, bool errors)
{
    // The memory of one child can be asked for by wait4 only, which QProcess does not give.
    QTemporaryFile output;
    if (!output.open())
        qFatal("no temporary file");
    std::vector<QByteArray> words;
    for (const QString &word : command)
        words.push_back(word.toLocal8Bit());
    std::vector<char *> arguments;
    for (QByteArray &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output.handle(), STDOUT_FILENO);
    if (!errors)
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ProcessCost cost;
    QElapsedTimer timer;
    timer.start();
    pid_t child = 0;
    const int failed =
        posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed)
        return cost;

    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        return cost;
    cost.seconds = double(timer.nsecsElapsed()) / 1e9;
    cost.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    cost.peakMegabytes = double(usage.ru_maxrss) / 1024; // told in kilobytes
    output.seek(0);
    cost.output = output.readAll();
    return cost;
}
