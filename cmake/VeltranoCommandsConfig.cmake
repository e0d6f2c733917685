# find_package(VeltranoCommands) defines the targets
#   VeltranoCommands::VeltranoCommands   the module, with the host's library if the package holds one
#   VeltranoCommands::FileHandler        the configuration handler over a storage file
# and the variables
#   VeltranoCommands_RUNTIME_DIR         on Windows: the folder of the DLLs that go next to the plug-in
#   VeltranoCommands_PLUGINS_DIR         the folder of the string files that go into Plugins next to the host's program
# Use the compiler that the package was built with: the exported classes contain types of its C++ library.
if(TARGET VeltranoCommands::VeltranoCommands)
    return()
endif()
get_filename_component(VeltranoCommands_PREFIX ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)
set(VeltranoCommands_PLUGINS_DIR ${VeltranoCommands_PREFIX}/share/VeltranoCommands/Plugins)
if(WIN32)
    set(VeltranoCommands_RUNTIME_DIR ${VeltranoCommands_PREFIX}/bin)
endif()

if(MSVC)
    set(_veltrano_import_library .lib)
    set(_veltrano_static_library veltrano_sdk.lib)
else()
    set(_veltrano_import_library .dll.a)
    set(_veltrano_static_library libveltrano_sdk.a)
endif()

function(_veltrano_library target name)
    add_library(${target} SHARED IMPORTED)
    if(WIN32)
        file(GLOB import_library ${VeltranoCommands_PREFIX}/lib/*${name}${_veltrano_import_library})
        set_target_properties(${target} PROPERTIES
            IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/bin/${name}.dll IMPORTED_IMPLIB "${import_library}")
    else()
        set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/lib/lib${name}.so)
    endif()
endfunction()

_veltrano_library(VeltranoCommands::VeltranoCommands VeltranoCommands)
target_compile_features(VeltranoCommands::VeltranoCommands INTERFACE cxx_std_20)
set(_veltrano_include ${VeltranoCommands_PREFIX}/include/VeltranoCommands)
target_include_directories(VeltranoCommands::VeltranoCommands SYSTEM INTERFACE ${_veltrano_include})
if(WIN32)
    target_compile_definitions(VeltranoCommands::VeltranoCommands INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601)
else()
    _veltrano_library(VeltranoCommands::Platform platform_win32)
    target_link_libraries(VeltranoCommands::VeltranoCommands INTERFACE VeltranoCommands::Platform)
endif()
# A package that was built with MFC or with the host's own libraries holds no layer for them.
if(EXISTS ${_veltrano_include}/platform/mfc)
    target_include_directories(VeltranoCommands::VeltranoCommands SYSTEM INTERFACE ${_veltrano_include}/platform/mfc)
endif()
if(EXISTS ${_veltrano_include}/platform/host)
    _veltrano_library(VeltranoCommands::Host platform_host)
    target_include_directories(VeltranoCommands::VeltranoCommands SYSTEM INTERFACE ${_veltrano_include}/platform/host)
    target_link_libraries(VeltranoCommands::VeltranoCommands INTERFACE VeltranoCommands::Host)
endif()
if(NOT EXISTS ${_veltrano_include}/boost)
    include(CMakeFindDependencyMacro)
    find_dependency(Boost)
    target_link_libraries(VeltranoCommands::VeltranoCommands INTERFACE Boost::headers)
endif()

add_library(VeltranoCommands::FileHandler STATIC IMPORTED)
set_target_properties(VeltranoCommands::FileHandler PROPERTIES
                      IMPORTED_LOCATION ${VeltranoCommands_PREFIX}/lib/${_veltrano_static_library})
target_link_libraries(VeltranoCommands::FileHandler INTERFACE VeltranoCommands::VeltranoCommands)
