#include "commands/CommandManager.h"
#include "projection/Cmd_DefineProjectionEntities.h"

namespace VLT
{
// The list of built-in commands. A member of the manager, but not in its file: the manager knows no command.
void CCommandManager::RegisterCommands()
{
    RegisterCommand(boost::shared_ptr<ICommand>(new CCommand_DefineProjectionEntities));
}
} // namespace VLT
