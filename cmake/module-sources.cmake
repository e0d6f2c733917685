# The module's sources: one list for every build.
set(VELTRANO_MODULE_SOURCES
    commands/CommandManager.cpp
    commands/ICommand.cpp
    commands/module/BuiltInCommands.cpp
    commands/module/ModuleObjects.cpp
    commands/module/VeltranoCommandsApp.cpp
    configuration/Configuration.cpp
    configuration/ConfigurationStorage.cpp
    configuration/Storage.cpp
    projection/base64/Base64.cpp
    projection/base64/Base64Ascii.cpp
    projection/Cmd_DefineProjectionEntities.cpp
    projection/DlgDefineProjections.cpp
    projection/ProjectionRegistry.cpp
    projection/base64/StoredAttribute.cpp
    uistrings/TextFile.cpp
    uistrings/TextFileReader.cpp
    uistrings/UIStrings.cpp
    xml/XmlAttributeReader.cpp
    xml/XmlAttributes.cpp
    xml/XmlDocument.cpp
    xml/XmlFile.cpp
    xml/XmlOpenNames.cpp
    xml/XmlParser.cpp
    xml/XmlRunOnSearches.cpp
    xml/XmlScanner.cpp
    xml/XmlTable.cpp
    xml/fast/XmlTagIndex.cpp
    xml/fast/XmlVector.cpp
    xml/fast/XmlVectorAvx2.cpp
    xml/fast/XmlVectorSse2.cpp
)

# These loops are so short that their alignment matters: up to a tenth of the time.
if(NOT MSVC)
    set_source_files_properties(xml/XmlParser.cpp xml/fast/XmlVectorAvx2.cpp PROPERTIES COMPILE_OPTIONS -falign-loops=64)
endif()
if(MINGW)
    # The compiler assumes a stack that is aligned for 32-byte vectors; on 64-bit Windows it is aligned for 16 bytes only.
    set_property(SOURCE xml/fast/XmlVectorAvx2.cpp projection/base64/Base64Ascii.cpp
                 APPEND PROPERTY COMPILE_OPTIONS -Wa,-muse-unaligned-vector-move)
endif()
