# What every target of ours is compiled with, and the one way a room is made: its headers are found from the folder above
# it, and only by the rooms that link it. An include that points the wrong way does not compile.

add_library(TandemOptions INTERFACE)
target_compile_options(TandemOptions INTERFACE -Wall -Wextra -Wpedantic -Werror -Wnon-virtual-dtor -Woverloaded-virtual)
# GCC 12 sees overlaps in std::string's own copying that cannot be there (its bug 105651).
target_compile_options(TandemOptions INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# What is inline need not be looked up by name when the program starts.
target_compile_options(TandemOptions INTERFACE -fvisibility-inlines-hidden)
target_link_options(TandemOptions INTERFACE -Wl,-Bsymbolic-functions)
if(TANDEM_SANITIZE)
    # The sanitizers' own code between the lines makes GCC see values that are never set, and sizes below zero.
    target_compile_options(TandemOptions INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-stringop-overflow>)
    target_compile_options(TandemOptions INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(TandemOptions INTERFACE -fsanitize=address,undefined)
endif()

# tandem_room(NAME KIND INCLUDES dir SOURCES ... LINKS ... PRIVATE_LINKS ...)
function(tandem_room name kind)
    cmake_parse_arguments(ROOM "" "INCLUDES" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} ${kind} ${ROOM_SOURCES})
    target_include_directories(${name} PUBLIC ${ROOM_INCLUDES})
    target_link_libraries(${name} PUBLIC ${ROOM_LINKS} PRIVATE TandemOptions ${ROOM_PRIVATE_LINKS})
endfunction()
