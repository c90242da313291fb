# The colours of the views, for the widgets around them: one constant for each
# 'var name = "#..."' of these scripts.
set(colourScripts "${PROJECT_SOURCE_DIR}/qml/colors.js" "${PROJECT_SOURCE_DIR}/qml/theme.js")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${colourScripts})

set(VIEW_COLOURS "")
foreach(script IN LISTS colourScripts)
    file(STRINGS "${script}" lines REGEX "^var [A-Za-z0-9]+ = \"#")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^var ([A-Za-z0-9]+) = (\"#[0-9A-Fa-f]+\").*"
            "constexpr char \\1[] = \\2;" line "${line}")
        string(APPEND VIEW_COLOURS "${line}\n")
    endforeach()
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/src/ui/viewcolours.h.in"
    "${PROJECT_BINARY_DIR}/generated/ui/viewcolours.h" @ONLY)
