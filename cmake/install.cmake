# What a plug-in author gets: headers, libraries, string files, the trial host, an example and a CMake package.
# cmake --install copies them to a folder, cpack into a zip.
set(include_dir include/VeltranoCommands)
set(share_dir share/VeltranoCommands)

# The exported headers and those that they include, with the same relative paths.
set(headers
    commands/CommandManager.h commands/ICommand.h
    configuration/Configuration.h configuration/ConfigurationStorage.h configuration/Export.h
    configuration/IConfigurationHandler.h configuration/Storage.h
    platform/compiler.h platform/text.h platform/win32/win32.h
    sdk/FileConfigurationHandler.h sdk/PlugIn.h sdk/StorageFile.h)
if(VELTRANO_MFC STREQUAL layer)
    list(APPEND headers platform/mfc/afxstr.h platform/mfc/afxver_.h)
endif()
if(NOT VELTRANO_HOST)
    list(APPEND headers
        platform/host/BaseEnum.h platform/host/BaseInputMode.h platform/host/CoordinateInput.h platform/host/Export.h
        platform/host/HostControl.h)
endif()
if(NOT WIN32)
    list(APPEND headers
        platform/win32/native/comdef.h platform/win32/native/fileops.h platform/win32/native/kernel.h
        platform/win32/native/resources.h platform/win32/native/runtime.h platform/win32/native/types.h
        platform/win32/native/user.h)
endif()
foreach(header ${headers})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${include_dir}/${folder} COMPONENT sdk)
endforeach()

function(install_licence file name component)
    install(FILES ${file} DESTINATION share/VeltranoCommands/licences RENAME ${name}.txt COMPONENT ${component})
endfunction()

# boost::shared_ptr is part of the exported signatures, so the package holds Boost's headers in the version that the
# module was built with: the files that the compiler lists. With Microsoft's compiler the plug-in needs the same Boost.
if(NOT MSVC)
    set(boost_source ${PROJECT_BINARY_DIR}/boost_headers.cpp)
    file(WRITE ${boost_source} "#include <boost/shared_ptr.hpp>\n")
    get_target_property(boost_dir boost_headers INTERFACE_INCLUDE_DIRECTORIES)
    set(boost_flags "")
    if(boost_dir)
        set(boost_flags -isystem ${boost_dir})
    endif()
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 ${boost_flags} -M ${boost_source}
                    OUTPUT_VARIABLE dependencies COMMAND_ERROR_IS_FATAL ANY)
    set(boost_root /usr/include) # the compiler lists the targets of symbolic links
    string(REGEX MATCHALL "${boost_root}/boost/[^ \n]+" boost_files "${dependencies}")
    if(NOT boost_files)
        message(FATAL_ERROR "no Boost headers for the package in ${boost_root}")
    endif()
    foreach(file ${boost_files})
        file(RELATIVE_PATH name ${boost_root} ${file})
        get_filename_component(folder ${name} DIRECTORY)
        install(FILES ${file} DESTINATION ${include_dir}/${folder} COMPONENT sdk)
    endforeach()
    file(GLOB boost_licence /usr/share/doc/libboost1.*-dev/copyright)
    install_licence(${boost_licence} boost sdk)
endif()

set(libraries VeltranoCommands veltrano_sdk)
if(NOT VELTRANO_HOST)
    list(APPEND libraries platform_host)
endif()
if(MINGW)
    install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libstdc++-6.dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libgcc_s_seh-1.dll
                  ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libwinpthread-1.dll
            DESTINATION bin COMPONENT sdk)
    install_licence(/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright gcc-runtime sdk)
    install_licence(/usr/share/common-licenses/GPL-3 GPL-3 sdk) # the licence above refers to it
    install_licence(/usr/share/doc/mingw-w64-x86-64-dev/copyright mingw-w64 sdk)
elseif(NOT WIN32)
    list(APPEND libraries platform_win32)
    set_target_properties(VeltranoCommands platform_host platform_win32 PROPERTIES INSTALL_RPATH $ORIGIN)
endif()
install(TARGETS ${libraries}
        RUNTIME DESTINATION bin COMPONENT sdk
        LIBRARY DESTINATION lib COMPONENT sdk
        ARCHIVE DESTINATION lib COMPONENT sdk)

set(programs vltconfig)
if(TARGET trialhost)
    list(APPEND programs trialhost)
endif()
set_target_properties(${programs} PROPERTIES INSTALL_RPATH $ORIGIN/../lib)
install(TARGETS ${programs} RUNTIME DESTINATION bin COMPONENT tools)
if(NOT MSVC)
    install_licence(/usr/share/doc/libcli11-dev/copyright cli11 tools)
    install(FILES tools/vltconfig/vltconfig.1 DESTINATION share/man/man1 COMPONENT tools)
    install(FILES tools/vltconfig/completion.bash DESTINATION share/bash-completion/completions RENAME vltconfig
            COMPONENT tools)
endif()

# The string files belong into the folder Plugins next to the host's program: once for a host elsewhere, which
# VeltranoCommands_PLUGINS_DIR names, and once for the trial host of this package.
install(FILES resources/strings/UIStrings_de.dat resources/strings/UIStrings_en.dat
        DESTINATION ${share_dir}/Plugins COMPONENT sdk)
install(FILES resources/strings/UIStrings_de.dat resources/strings/UIStrings_en.dat
        DESTINATION bin/Plugins COMPONENT tools)

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VeltranoCommandsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES cmake/VeltranoCommandsConfig.cmake ${PROJECT_BINARY_DIR}/VeltranoCommandsConfigVersion.cmake
        DESTINATION lib/cmake/VeltranoCommands COMPONENT sdk)

install(DIRECTORY examples/plugin DESTINATION ${share_dir}/examples COMPONENT sdk)
install(FILES docs/deployment.md DESTINATION ${share_dir} COMPONENT sdk)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Commands for a CAD host: the module and what a plug-in needs to use it")
include(CPack)
