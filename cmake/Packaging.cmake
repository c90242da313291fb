# What is installed, and the Debian packages of it: scripts/package.
#
# The program, its configuration and its launcher have one fixed directory, whose path the desktop
# entry, the D-Bus service and the program itself name. The engine is not part of this project; its
# two programs go beside "vireon". For trying the package without one there is a package of the
# simulated engine, the component "simulator".
if(NOT CMAKE_INSTALL_PREFIX MATCHES "^/usr/local/*$")
    message(FATAL_ERROR "CMAKE_INSTALL_PREFIX is ${CMAKE_INSTALL_PREFIX}: the program can only be "
        "installed below /usr/local, where the desktop looks for it")
endif()

set(programDirectory bin/Vireon)
set(programPlace /usr/local/${programDirectory})
set(shareDirectory "${PROJECT_BINARY_DIR}/share")
set(madeDirectory "${PROJECT_BINARY_DIR}/packaging")
set(debianDirectory "${PROJECT_SOURCE_DIR}/packaging/debian")
# The first version whose config/vireon.conf has lines of the present meaning: it goes up with the
# release that changes them, and an older file is not read by that one.
set(VIREON_CONF_LINES_SINCE 1.4.121)

# --- What it is about -------------------------------------------------------------------------

# The day of the release, and its second for all files of the packages, are the changelog's.
file(STRINGS "${debianDirectory}/changelog.in" trailer REGEX "^ -- " LIMIT_COUNT 1)
string(REGEX REPLACE "^.*>  " "" releaseTime "${trailer}")
execute_process(COMMAND date --utc --date "${releaseTime}" "+%s %Y-%m-%d"
    OUTPUT_VARIABLE releaseTime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " .*" "" releaseSecond "${releaseTime}")
string(REGEX REPLACE ".* " "" releaseDay "${releaseTime}")

# vireon_compress(<file>): <file>.gz beside it, as Debian wants it.
function(vireon_compress file)
    execute_process(COMMAND gzip --best --no-name --keep --force "${file}"
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The changed-once texts: version and day filled in.
foreach(name vireon.1 com.corvanthel.Vireon.metainfo.xml debian/changelog debian/copyright)
    configure_file("${PROJECT_SOURCE_DIR}/packaging/${name}.in" "${madeDirectory}/${name}" @ONLY)
endforeach()
file(COPY "${PROJECT_SOURCE_DIR}/packaging/vireonctl.1" DESTINATION "${madeDirectory}")
vireon_compress("${madeDirectory}/vireon.1")
vireon_compress("${madeDirectory}/vireonctl.1")
vireon_compress("${madeDirectory}/debian/changelog")

# --- What goes where --------------------------------------------------------------------------

# Whatever the umask of the build.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

file(GLOB configFiles CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/config/*.conf")
install(TARGETS vireon vireonctl vireon-box DESTINATION ${programDirectory} COMPONENT vireon)
# Where a shell finds it.
file(CREATE_LINK Vireon/vireonctl "${madeDirectory}/vireonctl" SYMBOLIC)
install(FILES "${madeDirectory}/vireonctl" DESTINATION bin COMPONENT vireon)
install(FILES packaging/vireonctl.bash
    DESTINATION share/bash-completion/completions RENAME vireonctl COMPONENT vireon)
install(PROGRAMS packaging/Vireon.sh DESTINATION ${programDirectory} COMPONENT vireon)
install(FILES ${configFiles} DESTINATION ${programDirectory}/config COMPONENT vireon)
install(FILES "${shareDirectory}/vireon/Corvanthel.png"
    "${shareDirectory}/vireon/CorvanthelSmall.png"
    DESTINATION ${programDirectory} COMPONENT vireon)
install(DIRECTORY "${shareDirectory}/icons" DESTINATION share COMPONENT vireon)
install(FILES packaging/com.corvanthel.Vireon.desktop
    DESTINATION share/applications COMPONENT vireon)
install(FILES packaging/com.corvanthel.Vireon.service
    DESTINATION share/dbus-1/services COMPONENT vireon)
install(FILES "${madeDirectory}/com.corvanthel.Vireon.metainfo.xml"
    DESTINATION share/metainfo COMPONENT vireon)
install(FILES "${madeDirectory}/vireon.1.gz" "${madeDirectory}/vireonctl.1.gz"
    DESTINATION share/man/man1 COMPONENT vireon)
install(FILES packaging/Vireon.desktop DESTINATION /etc/xdg/autostart COMPONENT vireon)
install(TARGETS vireon-main vireon-sdk
    DESTINATION ${programDirectory} COMPONENT simulator EXCLUDE_FROM_ALL)

include(UserGuide)

foreach(component vireon simulator)
    string(REPLACE "simulator" "vireon-simulator" package ${component})
    install(FILES "${madeDirectory}/debian/changelog.gz" "${madeDirectory}/debian/copyright"
        DESTINATION /usr/share/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
    install(FILES "${debianDirectory}/${package}.lintian-overrides" RENAME ${package}
        DESTINATION /usr/share/lintian/overrides COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

# --- The packages' scripts and fields ---------------------------------------------------------

# An administrator's changes of these outlive an update.
list(TRANSFORM configFiles REPLACE ".*/" "${programPlace}/config/" OUTPUT_VARIABLE conffiles)
list(APPEND conffiles /etc/xdg/autostart/Vireon.desktop)
set(positionalConffile ${programPlace}/config/vireon.conf)
list(JOIN conffiles " " conffileWords)
list(JOIN conffiles "\n" conffileLines)
file(CONFIGURE OUTPUT "${madeDirectory}/vireon/conffiles" CONTENT "${conffileLines}\n")

set(defaultCases "")
foreach(source installed IN ZIP_LISTS configFiles conffiles)
    if(NOT source)
        set(source "${PROJECT_SOURCE_DIR}/packaging/Vireon.desktop")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
    file(READ "${source}" content)
    string(APPEND defaultCases
        "    ${installed})\n        cat << 'END_OF_DEFAULT'\n${content}END_OF_DEFAULT\n        ;;\n")
endforeach()
string(REGEX REPLACE "\n$" "" defaultCases "${defaultCases}")
set(scripts preinst postinst postrm)
foreach(script ${scripts})
    configure_file("${debianDirectory}/${script}.in" "${madeDirectory}/vireon/${script}"
        @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endforeach()
configure_file("${debianDirectory}/simulator.preinst" "${madeDirectory}/simulator/preinst"
    COPYONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
list(TRANSFORM scripts PREPEND "${madeDirectory}/vireon/")

# The packages of a group of packages.txt, as a list for the package's field.
function(vireon_packages_of group variable)
    file(STRINGS "${PROJECT_SOURCE_DIR}/packages.txt" lines)
    set(packages "")
    set(current "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^# \\[([a-z]+)\\]")
            set(current "${CMAKE_MATCH_1}")
        elseif(current STREQUAL group AND line MATCHES "^[a-z0-9]")
            string(REGEX REPLACE "[ #].*" "" package "${line}")
            list(APPEND packages "${package}")
        endif()
    endforeach()
    list(JOIN packages ", " packages)
    set(${variable} "${packages}" PARENT_SCOPE)
endfunction()

vireon_packages_of(run runPackages)
vireon_packages_of(unity unityPackages)
vireon_packages_of(report reportPackages)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packages.txt)
# The compiled views fit the very version of Qt that they were compiled with.
string(REPLACE "." "-" viewsVersion "${Qt5Qml_VERSION}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vireon)
set(CPACK_PACKAGE_CONTACT "Vireon <support@vireon.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_SET_DESTDIR ON) # some of it lies outside the prefix
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_COMPONENTS_ALL vireon simulator)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${VIREON_SUPPORT_URL}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_VIREON_PACKAGE_NAME vireon)
set(CPACK_DEBIAN_VIREON_PACKAGE_DEPENDS "qtdeclarative-abi-${viewsVersion}, ${runPackages}")
set(CPACK_DEBIAN_VIREON_PACKAGE_RECOMMENDS "${unityPackages}, ${reportPackages}")
set(CPACK_DEBIAN_VIREON_PACKAGE_SUGGESTS vireon-simulator)
set(CPACK_DEBIAN_VIREON_PACKAGE_CONTROL_EXTRA "${madeDirectory}/vireon/conffiles" ${scripts})
set(CPACK_COMPONENT_VIREON_DESCRIPTION "controller of an interactive touch and pen projection
Vireon keeps the vision engine of a camera-based interactive projection
running, calibrates it, switches between finger and stylus and shows its state
in a window, in the tray and by notifications.
.
The engine is not part of this package. vireon-simulator has a simulated one.")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME vireon-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_DEPENDS vireon)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_CONTROL_EXTRA "${madeDirectory}/simulator/preinst")
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION "simulated engine, for trying Vireon without the device
Two programs that behave to the controller as a real engine does: they report
a state, take commands and can play a scenario. They see and move nothing.
.
It is for demonstrations and tests, and lies where a real engine would.")

set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/PackageTools.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/FinishPackages.cmake")
set(CPACK_VIREON_RELEASE_SECOND "${releaseSecond}")
include(CPack)
