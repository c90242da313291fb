# Included once, where BUILD_TESTING is on.
find_package(Qt5 5.15 REQUIRED COMPONENTS Test)

# vireon_add_unit_test(<name> [SOURCES file...] [LIBRARIES target...] [TIMEOUT seconds])
# A Qt Test program <name>.cpp that links what ships. It runs offscreen, with a HOME, a runtime
# directory and a TMPDIR of its own below the build tree; VIREON_SOURCE_DIR tells it where the tree
# is. Its includes start at the tree ("sim/x.h") or at tests ("support/x.h").
function(vireon_add_unit_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE VIREON_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE vireon-core vireon-options Qt5::Test ${ARG_LIBRARIES})
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests/${name}.dir")
    set(home "${PROJECT_BINARY_DIR}/tests/${name}.dir/home")
    file(MAKE_DIRECTORY "${home}/Documents" "${home}/tmp" "${home}/run")
    file(CHMOD "${home}/run" DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY "${home}")
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "HOME=${home};XDG_CONFIG_HOME=${home}/.config;TMPDIR=${home}/tmp;XDG_RUNTIME_DIR=${home}/run;\
QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;LANG=C.UTF-8;LANGUAGE="
        ENVIRONMENT_MODIFICATION "LC_ALL=unset:;XDG_CURRENT_DESKTOP=unset:")
endfunction()
