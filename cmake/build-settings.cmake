# What every target of the repository is compiled with.
add_library(veltrano_settings INTERFACE)
target_compile_features(veltrano_settings INTERFACE cxx_std_20)
target_compile_options(veltrano_settings INTERFACE -Wall -Wextra -Wpedantic -Werror)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
# Everything that runs stands in one folder: a DLL is looked for beside the program.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

set(VELTRANO_SANITIZE "" CACHE STRING "sanitizers of the build, as for -fsanitize")
if(VELTRANO_SANITIZE)
    add_compile_options(-fsanitize=${VELTRANO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VELTRANO_SANITIZE})
endif()

option(VELTRANO_COVERAGE "count how often each line ran" OFF)
if(VELTRANO_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

# Header-only libraries. The cross build must not see the system's own headers that stand beside them.
add_library(boost_headers INTERFACE)
add_library(cli_headers INTERFACE)
if(WIN32)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/headers)
    file(CREATE_LINK /usr/include/boost ${PROJECT_BINARY_DIR}/headers/boost SYMBOLIC)
    file(CREATE_LINK /usr/include/CLI ${PROJECT_BINARY_DIR}/headers/CLI SYMBOLIC)
    target_include_directories(boost_headers SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)
    target_include_directories(cli_headers SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)

    target_compile_definitions(veltrano_settings INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601)
    file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    # The C++ runtime that module, host library and programs share goes beside them.
    foreach(runtime libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime} OUTPUT_VARIABLE path
                        OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            set(path /usr/x86_64-w64-mingw32/lib/${runtime})
        endif()
        file(COPY_FILE ${path} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${runtime} ONLY_IF_DIFFERENT)
    endforeach()
endif()
