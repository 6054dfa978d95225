#include "Linux/Desktop/MailProgram.h"

namespace {

constexpr const char* mailProgram = "xdg-email";

}

ProgramCommand mailCommand(const MailDraft& draft, const std::vector<std::string>& files)
{
    const std::string program = pathOfProgram(mailProgram);
    if (program.empty())
        return {};
    ProgramCommand command { program, "--utf8" };
    // It takes no empty texts.
    if (!draft.subject.empty())
        command.insert(command.end(), { "--subject", draft.subject });
    if (!draft.body.empty())
        command.insert(command.end(), { "--body", draft.body });
    for (const std::string& file : files)
        command.insert(command.end(), { "--attach", file });
    if (!draft.recipient.empty())
        command.push_back(draft.recipient);
    return command;
}
