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
        # What GCC 12 concludes from inlined code, it concludes wrongly: null accesses under the
        # sanitizers, overlapping copies in concatenations of strings, the heap pointer of a short
        # array and accesses behind vectors of bytes. Clang and the sanitizers watch for the same.
        target_compile_options(tavocal-options INTERFACE
            -Wno-null-dereference -Wno-restrict -Wno-array-bounds -Wno-maybe-uninitialized
            -Wno-stringop-overread -Wno-stringop-overflow)
    endif()
    # A debug build ends where an index lies outside, also where it would go unnoticed.
    target_compile_definitions(tavocal-options INTERFACE
        $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)
    if(TAVOCAL_SANITIZE)
        target_compile_options(tavocal-options INTERFACE
            -fsanitize=${TAVOCAL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(tavocal-options INTERFACE -fsanitize=${TAVOCAL_SANITIZE})
    endif()
endif()
