# What every target of the repository is compiled with.
add_library(veltrano_settings INTERFACE)
target_compile_features(veltrano_settings INTERFACE cxx_std_20)
# The presets also set CMAKE_COMPILE_WARNING_AS_ERROR; whoever builds without them only sees the warnings.
if(MSVC)
    target_compile_options(veltrano_settings INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
    target_compile_options(veltrano_settings INTERFACE -Wall -Wextra -Wpedantic)
endif()
if(WIN32)
    # As definitions, since MFC's own headers include the Windows headers.
    target_compile_definitions(veltrano_settings INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601 NOMINMAX
                                                           WIN32_LEAN_AND_MEAN)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
# All programs and libraries go into one folder: Windows looks for a DLL next to the program.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# The cross build reads the Windows headers once for a target: they take longer than any source here. Other builds do
# without this, so that a missing include is noticed.
function(precompile_windows_headers)
    if(MINGW)
        foreach(target ${ARGN})
            target_precompile_headers(${target} PRIVATE <afxwin.h>)
        endforeach()
    endif()
endfunction()

set(VELTRANO_SANITIZE "" CACHE STRING "sanitizers of the build, as for -fsanitize")
if(VELTRANO_SANITIZE)
    add_compile_options(-fsanitize=${VELTRANO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VELTRANO_SANITIZE})
endif()

# The targets whose lines are counted link to counted_lines. Tests do not: counting doubles the time that they compile.
option(VELTRANO_COVERAGE "count how often each line of the module and of the file handler ran" OFF)
add_library(counted_lines INTERFACE)
if(VELTRANO_COVERAGE)
    target_compile_options(counted_lines INTERFACE --coverage)
    add_link_options(--coverage)
endif()

# Header-only libraries. The cross build gets a folder that holds only these two, without the system's own headers.
add_library(boost_headers INTERFACE)
add_library(cli_headers INTERFACE)
if(MSVC)
    find_package(Boost REQUIRED)
    find_package(CLI11 REQUIRED)
    target_link_libraries(boost_headers INTERFACE Boost::headers)
    target_link_libraries(cli_headers INTERFACE CLI11::CLI11)
elseif(WIN32)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/headers)
    file(CREATE_LINK /usr/include/boost ${PROJECT_BINARY_DIR}/headers/boost SYMBOLIC)
    file(CREATE_LINK /usr/include/CLI ${PROJECT_BINARY_DIR}/headers/CLI SYMBOLIC)
    target_include_directories(boost_headers SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)
    target_include_directories(cli_headers SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)

    file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    # Module, host library and programs share the C++ runtime, which goes into the same folder.
    foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime} OUTPUT_VARIABLE path
                        OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            set(path /usr/x86_64-w64-mingw32/lib/${runtime})
        endif()
        file(COPY_FILE ${path} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${runtime} ONLY_IF_DIFFERENT)
    endforeach()
endif()
