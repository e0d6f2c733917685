/// All module-level objects that are constructed at load. They are in one file because only within a file C++ defines
/// the order: from top to bottom, and at unload from bottom to top. The framework's module state is constructed first,
/// when the application object asks for it.
#include "commands/module/VeltranoCommandsApp.h"
#include "projection/base64/Base64.h"
#include "uistrings/UIStrings.h"

namespace
{
CVeltranoCommandsApp s_theApp;
} // namespace

WString CUIStrings::m_currentLanguage;
std::map<WString, UIStringMapPtr> CUIStrings::m_languages;

const std::string s_base64Alphabet = Base64Alphabet;
