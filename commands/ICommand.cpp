#include "commands/ICommand.h"

namespace VLT
{
// Out of line, for they are exported. An interface holds nothing that could be copied.
ICommand::ICommand() = default;
ICommand::ICommand(const ICommand&) = default;
ICommand::ICommand(ICommand&&) noexcept = default;
ICommand& ICommand::operator=(const ICommand&) = default;
ICommand& ICommand::operator=(ICommand&&) noexcept = default;
} // namespace VLT
