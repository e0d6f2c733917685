# What a plug-in author gets: headers, libraries and a CMake package (cmake --install, or a zip from cpack).
set(include_dir include/VeltranoCommands)
set(package_dir lib/cmake/VeltranoCommands)

# The exported headers and all that they include, under the paths by which they include each other.
set(headers
    commands/CommandManager.h commands/ICommand.h
    configuration/Configuration.h configuration/ConfigurationStorage.h configuration/Export.h
    configuration/IConfigurationHandler.h configuration/Storage.h
    platform/compiler.h platform/text.h
    platform/host/BaseEnum.h platform/host/BaseInputMode.h platform/host/CoordinateInput.h platform/host/Export.h
    platform/host/HostControl.h
    platform/mfc/afxver_.h platform/mfc/afxstr.h
    platform/win32/win32.h
    sdk/FileConfigurationHandler.h sdk/PlugIn.h sdk/StorageFile.h)
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

# boost::shared_ptr stands in the exported signatures: its headers come along in the version that the module was built
# with. The compiler says which they are.
set(boost_source ${PROJECT_BINARY_DIR}/boost_headers.cpp)
file(WRITE ${boost_source} "#include <boost/shared_ptr.hpp>\n")
get_target_property(boost_dir boost_headers INTERFACE_INCLUDE_DIRECTORIES)
set(boost_flags "")
if(boost_dir)
    set(boost_flags -isystem ${boost_dir})
endif()
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 ${boost_flags} -M ${boost_source}
                OUTPUT_VARIABLE dependencies COMMAND_ERROR_IS_FATAL ANY)
set(boost_root /usr/include) # of the files, also where a link leads there
string(REGEX MATCHALL "${boost_root}/boost/[^ \n]+" boost_files "${dependencies}")
if(NOT boost_files)
    message(FATAL_ERROR "no Boost headers for the package in ${boost_root}")
endif()
foreach(file ${boost_files})
    file(RELATIVE_PATH name ${boost_root} ${file})
    get_filename_component(folder ${name} DIRECTORY)
    install(FILES ${file} DESTINATION ${include_dir}/${folder} COMPONENT sdk)
endforeach()

# The licences of what the package holds of others, where Debian keeps them.
function(install_licence file name component)
    install(FILES ${file} DESTINATION share/VeltranoCommands/licences RENAME ${name}.txt COMPONENT ${component})
endfunction()
file(GLOB boost_licence /usr/share/doc/libboost1.*-dev/copyright)
install_licence(${boost_licence} boost sdk)

set(libraries VeltranoCommands platform_host veltrano_sdk)
if(WIN32)
    install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libstdc++-6.dll ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libgcc_s_seh-1.dll
                  ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/libwinpthread-1.dll
            DESTINATION bin COMPONENT sdk)
    install_licence(/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright gcc-runtime sdk)
    install_licence(/usr/share/common-licenses/GPL-3 GPL-3 sdk) # the one before refers to it
    install_licence(/usr/share/doc/mingw-w64-x86-64-dev/copyright mingw-w64 sdk)
else()
    list(APPEND libraries platform_win32)
    set_target_properties(VeltranoCommands platform_host platform_win32 PROPERTIES INSTALL_RPATH $ORIGIN)
endif()
install(TARGETS ${libraries}
        RUNTIME DESTINATION bin COMPONENT sdk
        LIBRARY DESTINATION lib COMPONENT sdk
        ARCHIVE DESTINATION lib COMPONENT sdk)
if(TARGET vltconfig)
    set_target_properties(vltconfig PROPERTIES INSTALL_RPATH $ORIGIN/../lib)
    install(TARGETS vltconfig RUNTIME DESTINATION bin COMPONENT tools)
    install_licence(/usr/share/doc/libcli11-dev/copyright cli11 tools)
    install(FILES tools/vltconfig/vltconfig.1 DESTINATION share/man/man1 COMPONENT tools)
    install(FILES tools/vltconfig/completion.bash DESTINATION share/bash-completion/completions RENAME vltconfig
            COMPONENT tools)
endif()

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VeltranoCommandsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES cmake/VeltranoCommandsConfig.cmake ${PROJECT_BINARY_DIR}/VeltranoCommandsConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT sdk)

install(DIRECTORY examples/plugin DESTINATION share/VeltranoCommands/examples COMPONENT sdk)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Commands for a CAD host: the module and what a plug-in needs to use it")
include(CPack)
