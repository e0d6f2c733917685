#include "commands/CommandManager.h"
#include "projection/Cmd_DefineProjectionEntities.h"

namespace VLT
{
// The list of built-in commands. It has its own file, so that CommandManager.cpp depends on no command.
void CCommandManager::RegisterCommands()
{
    RegisterCommand(boost::shared_ptr<ICommand>(new CCommand_DefineProjectionEntities));
}
} // namespace VLT
