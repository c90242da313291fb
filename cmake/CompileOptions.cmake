# The compiler's options for our own code: every target of this project links vireon-options. The
# preset chooses the sanitizers ("address;undefined", "thread" or none).
set(VIREON_SANITIZERS "" CACHE STRING "Sanitizers for our own code, separated by semicolons")

add_library(vireon-options INTERFACE)
target_compile_options(vireon-options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Qt's logging macros are written in that way, and clang 14 blames who calls them.
    target_compile_options(vireon-options INTERFACE -Wno-gnu-zero-variadic-macro-arguments)
endif()
target_compile_definitions(vireon-options INTERFACE
    QT_DEPRECATED_WARNINGS
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH)

if(VIREON_SANITIZERS)
    list(JOIN VIREON_SANITIZERS "," sanitizerList)
    add_compile_options(-fsanitize=${sanitizerList} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${sanitizerList})
    if("undefined" IN_LIST VIREON_SANITIZERS)
        add_compile_options(-fno-sanitize-recover=undefined)
        # Qt's own libraries carry no type information that the vptr check could read.
        add_compile_options(-fno-sanitize=vptr)
    endif()
endif()

# What ships is linked with this too: Debian's hardening. The sanitizers look deeper than it.
add_library(vireon-hardening INTERFACE)
if(NOT VIREON_SANITIZERS)
    target_compile_options(vireon-hardening INTERFACE
        $<$<CONFIG:Release>:-fstack-protector-strong -D_FORTIFY_SOURCE=2>)
    target_link_options(vireon-hardening INTERFACE -Wl,-z,relro,-z,now)
endif()
