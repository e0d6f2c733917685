#include "commands/ICommand.h"

namespace VLT
{
// Defined out of line because they are exported.
ICommand::ICommand() = default;
ICommand::ICommand(const ICommand&) = default;
ICommand::ICommand(ICommand&&) noexcept = default;
ICommand& ICommand::operator=(const ICommand&) = default;
ICommand& ICommand::operator=(ICommand&&) noexcept = default;
} // namespace VLT
