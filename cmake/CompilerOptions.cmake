# Options that every target of the project shares.
add_library(tavocal-options INTERFACE)

if(MSVC)
    target_compile_options(tavocal-options INTERFACE /W4 /WX /permissive- /utf-8 /fp:precise)
else()
    # No contraction of a*b+c and no fast-math: every build must print the same digits.
    target_compile_options(tavocal-options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
        -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Werror
        -ffp-contract=off)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # GCC 12 sees null accesses in inlined library code under the sanitizers, and overlapping
        # copies in inlined concatenations of strings.
        target_compile_options(tavocal-options INTERFACE -Wno-null-dereference -Wno-restrict)
    endif()
    if(TAVOCAL_SANITIZE)
        target_compile_options(tavocal-options INTERFACE
            -fsanitize=${TAVOCAL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(tavocal-options INTERFACE -fsanitize=${TAVOCAL_SANITIZE})
    endif()
endif()
