/// The module-level objects, in the one file in which the order of their making is certain: they are made at load from
/// the top of this file to its end, and destroyed at unload in the reverse order. The application object asks for the
/// framework's module state, which is thereby made before all of them.
#include "commands/module/VeltranoCommandsApp.h"
#include "projection/base64/Base64.h"
#include "uistrings/UIStrings.h"

namespace
{
CVeltranoCommandsApp s_theApp;
} // namespace

WString CUIStrings::m_currentLanguage;
std::map<WString, UIStringMapPtr> CUIStrings::m_languages;

const std::string s_base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
