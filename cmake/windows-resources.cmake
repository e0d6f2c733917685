# add_windows_resources(TARGET RC-FILE): makes an object library of the compiled resources of an .rc file.
# On Windows the linker puts them into the binary. Elsewhere the same resource compiler writes a .res file, which is
# embedded as data; the stand-in for LoadStringW and for dialog templates reads it.
# Link the objects with $<TARGET_OBJECTS:TARGET>.
set(VELTRANO_WINDOWS_RESOURCES_DIR ${CMAKE_CURRENT_LIST_DIR})
function(add_windows_resources target rc)
    if(WIN32)
        add_library(${target} OBJECT ${rc})
        target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
        return()
    endif()
    find_program(VELTRANO_WINDRES x86_64-w64-mingw32-windres REQUIRED)
    set(res ${CMAKE_CURRENT_BINARY_DIR}/${target}.res)
    file(GLOB neighbours CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/*)
    add_custom_command(OUTPUT ${res}
        COMMAND ${VELTRANO_WINDRES} -I ${PROJECT_SOURCE_DIR} -I ${PROJECT_BINARY_DIR} -O res -i ${CMAKE_CURRENT_SOURCE_DIR}/${rc} -o ${res}
        DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${rc} ${neighbours} ${PROJECT_BINARY_DIR}/resources/version.h VERBATIM)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    set(VELTRANO_RES_FILE ${res})
    configure_file(${VELTRANO_WINDOWS_RESOURCES_DIR}/embedded-resources.cpp.in ${source} @ONLY)
    set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${res})
    add_library(${target} OBJECT ${source})
    target_link_libraries(${target} PRIVATE veltrano_settings platform_win32)
endfunction()
