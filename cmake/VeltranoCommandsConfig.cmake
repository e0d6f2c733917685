# find_package(VeltranoCommands) gives the targets
#   VeltranoCommands::VeltranoCommands   the module, with the host's library that it shares with its plug-ins
#   VeltranoCommands::FileHandler        the configuration handler over a storage file
# and VeltranoCommands_RUNTIME_DIR, the folder of the DLLs that have to stand beside a plug-in's program on Windows.
# One package is for one compiler: the exported classes carry types of the C++ library.
if(TARGET VeltranoCommands::VeltranoCommands)
    return()
endif()
get_filename_component(VeltranoCommands_PREFIX ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)

function(_veltrano_library target name)
    add_library(${target} SHARED IMPORTED)
    if(EXISTS ${VeltranoCommands_PREFIX}/bin/${name}.dll)
        set_target_properties(${target} PROPERTIES
            IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/bin/${name}.dll
            IMPORTED_IMPLIB ${VeltranoCommands_PREFIX}/lib/lib${name}.dll.a)
    else()
        set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/lib/lib${name}.so)
    endif()
endfunction()

_veltrano_library(VeltranoCommands::VeltranoCommands VeltranoCommands)
_veltrano_library(VeltranoCommands::Host platform_host)
target_compile_features(VeltranoCommands::VeltranoCommands INTERFACE cxx_std_20)
target_include_directories(VeltranoCommands::VeltranoCommands SYSTEM INTERFACE
                           ${VeltranoCommands_PREFIX}/include/VeltranoCommands
                           ${VeltranoCommands_PREFIX}/include/VeltranoCommands/platform/mfc)
target_link_libraries(VeltranoCommands::VeltranoCommands INTERFACE VeltranoCommands::Host)
if(WIN32)
    target_compile_definitions(VeltranoCommands::VeltranoCommands INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601)
    set(VeltranoCommands_RUNTIME_DIR ${VeltranoCommands_PREFIX}/bin)
else()
    _veltrano_library(VeltranoCommands::Platform platform_win32)
    target_link_libraries(VeltranoCommands::VeltranoCommands INTERFACE VeltranoCommands::Platform)
endif()

add_library(VeltranoCommands::FileHandler STATIC IMPORTED)
set_target_properties(VeltranoCommands::FileHandler PROPERTIES
                      IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/lib/libveltrano_sdk.a)
target_link_libraries(VeltranoCommands::FileHandler INTERFACE VeltranoCommands::VeltranoCommands)
