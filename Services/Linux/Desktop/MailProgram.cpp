#include "Linux/Desktop/MailProgram.h"

#include <QStandardPaths>
#include <QThread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace {

constexpr const char* mailProgram = "xdg-email";
constexpr unsigned long pollMilliseconds = 20;
constexpr int polls = 200;

/// It takes no empty texts.
QStringList wordsOf(const MailDraft& draft, const QStringList& files)
{
    QStringList words { QStringLiteral("--utf8") };
    if (!draft.subject.empty())
        words << QStringLiteral("--subject") << QString::fromStdString(draft.subject);
    if (!draft.body.empty())
        words << QStringLiteral("--body") << QString::fromStdString(draft.body);
    for (const QString& file : files)
        words << QStringLiteral("--attach") << file;
    if (!draft.recipient.empty())
        words << QString::fromStdString(draft.recipient);
    return words;
}

/// Starts the program with nothing to read and nowhere to write to. It outlives this one. -1 when it cannot be started.
pid_t started(const QString& program, const QStringList& words)
{
    std::vector<QByteArray> texts { program.toLocal8Bit() };
    for (const QString& word : words)
        texts.push_back(word.toLocal8Bit());
    std::vector<char*> arguments;
    for (QByteArray& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int descriptor : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
        posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
    pid_t process = -1;
    const int failure = posix_spawn(&process, arguments.front(), &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? process : -1;
}

} // namespace

bool runMailProgram(const MailDraft& draft, const QStringList& files)
{
    const QString program = QStandardPaths::findExecutable(QLatin1String(mailProgram));
    const pid_t process = program.isEmpty() ? -1 : started(program, wordsOf(draft, files));
    if (process < 0)
        return false;
    for (int i = 0; i < polls; ++i) {
        int status = 0;
        if (waitpid(process, &status, WNOHANG) == process)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        QThread::msleep(pollMilliseconds);
    }
    return true;
}
