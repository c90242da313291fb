# The user guide as HTML, in the build tree's guide/, where pandoc is; the packages need it.
find_program(VIREON_PANDOC pandoc)
set(guidePages "")
foreach(language en de ja)
    string(REPLACE ".en" "" name "user-guide.${language}")
    set(page "${PROJECT_BINARY_DIR}/guide/${name}.html")
    set(source "${PROJECT_SOURCE_DIR}/docs/${name}.md")
    set(style "${PROJECT_SOURCE_DIR}/docs/guide/style.html")
    set(links "${PROJECT_SOURCE_DIR}/docs/guide/links.lua")
    add_custom_command(OUTPUT "${page}"
        COMMAND "${VIREON_PANDOC}" --standalone --toc --toc-depth 2 --from markdown-smart+east_asian_line_breaks --to html5
            --lua-filter "${links}" --include-in-header "${style}" -o "${page}" "${source}"
        DEPENDS "${source}" "${style}" "${links}"
        VERBATIM)
    list(APPEND guidePages "${page}")
endforeach()
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/guide")
if(VIREON_PANDOC)
    add_custom_target(guide ALL DEPENDS ${guidePages})
endif()

# Its absence is no error before somebody makes a package.
install(FILES ${guidePages} DESTINATION /usr/share/doc/vireon COMPONENT vireon OPTIONAL)
install(DIRECTORY docs/guide/ DESTINATION /usr/share/doc/vireon/guide COMPONENT vireon
    FILES_MATCHING PATTERN "*.png")
