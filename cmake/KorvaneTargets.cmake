# How the layers are made: one object library per top-level folder, each allowed to see only the layers that it names,
# all of them joined into the one library `korvane`.

# Flags that every target of this project compiles and links with. A switch that forgets a case of its enumeration is an
# error always: the tables of cases rest on it (Platform/EnumTable.h).
add_library(korvane_flags INTERFACE)
target_compile_features(korvane_flags INTERFACE cxx_std_20)
target_compile_options(korvane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror=switch
    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
include(KorvaneHardening)
target_link_libraries(korvane_flags INTERFACE korvane_hardening)
if(KORVANE_LINKER)
    target_link_options(korvane_flags INTERFACE -fuse-ld=${KORVANE_LINKER})
endif()
if(KORVANE_SANITIZE)
    target_compile_options(korvane_flags INTERFACE
        -fsanitize=${KORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(korvane_flags INTERFACE -fsanitize=${KORVANE_SANITIZE})
endif()

# Until 1.0 the binary interface is kept within a minor version.
set(KORVANE_ABI "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")

# korvane_precompile(<target> [<owner>]): what nearly every source draws in, parsed once for an owner, whose file of a
# hundred megabytes others with the same flags take over. Each header still compiles alone, which a test of the tree
# proves.
set(KORVANE_PRECOMPILED_JSON "${CMAKE_CURRENT_LIST_DIR}/PrecompiledJSON.h")
function(korvane_precompile target)
    if(ARGC GREATER 1)
        target_precompile_headers(${target} REUSE_FROM ${ARGV1})
    else()
        target_precompile_headers(${target} PRIVATE <algorithm> <array> <atomic> <functional> <map> <memory> <mutex>
            <optional> <set> <span> <string> <variant> <vector> "${KORVANE_PRECOMPILED_JSON}")
    endif()
endfunction()

# The owner for all layers. It has none of the definitions that come with a layer's private libraries: a precompiled header
# is refused where one of its own is missing.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/Precompiled.cpp" CONTENT "")
add_library(korvane_precompiled OBJECT "${PROJECT_BINARY_DIR}/Precompiled.cpp")
set_target_properties(korvane_precompiled PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(korvane_precompiled PRIVATE nlohmann_json::nlohmann_json korvane_flags)
korvane_precompile(korvane_precompiled)

# korvane_layer(<name> FOLDERS <folder>... SOURCES <file>... [USES <layer>...] [LIBRARIES <private library>...])
# Includes are written from the tree's root ("Crypt/JWE.h"), but a layer does not see the tree: it sees a folder of links
# to its own headers, those that lie in FOLDERS, and the folders of the layers that it names. An include of anything else
# is no file to the compiler. LIBRARIES are for the layer's own .cpp files; nlohmann_json is public, since headers hold
# JSON values.
function(korvane_layer name)
    cmake_parse_arguments(LAYER "" "" "FOLDERS;SOURCES;USES;LIBRARIES" ${ARGN})
    set(root "${PROJECT_BINARY_DIR}/layers/${name}")
    korvane_link_headers("${root}" ${LAYER_FOLDERS})
    add_library(korvane_${name} OBJECT ${LAYER_SOURCES})
    add_library(Korvane::${name} ALIAS korvane_${name})
    set_target_properties(korvane_${name} PROPERTIES
        POSITION_INDEPENDENT_CODE ON CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        KORVANE_LIBRARIES "${LAYER_LIBRARIES}")
    target_include_directories(korvane_${name} PUBLIC "$<BUILD_INTERFACE:${root}>")
    target_link_libraries(korvane_${name} PUBLIC nlohmann_json::nlohmann_json
        PRIVATE korvane_flags ${LAYER_LIBRARIES})
    korvane_precompile(korvane_${name} korvane_precompiled)
    foreach(used IN LISTS LAYER_USES)
        target_link_libraries(korvane_${name} PRIVATE korvane_${used})
    endforeach()
endfunction()

# korvane_link_headers(<root> <folder>...): under a root, a link to every header that lies in one of the tree's folders.
function(korvane_link_headers root)
    foreach(folder IN LISTS ARGN)
        file(GLOB headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
        file(MAKE_DIRECTORY "${root}/${folder}")
        foreach(header IN LISTS headers)
            file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${header}" "${root}/${header}" SYMBOLIC)
        endforeach()
    endforeach()
endfunction()

# korvane_library(<name> LAYERS <layer>...): the library that is installed, static or shared, with its public headers; and
# <name>_internals, for what of this project looks inside: the same code, with all headers of the tree. A shared library hides its
# inside, so that this one is a static library of its own then.
function(korvane_library name)
    cmake_parse_arguments(LIBRARY "" "" "LAYERS" ${ARGN})
    add_library(${name})
    add_library(Korvane::${name} ALIAS ${name})
    korvane_join_layers(${name} ${LIBRARY_LAYERS})
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${KORVANE_ABI})
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${KORVANE_PUBLIC_ROOT}>" "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    if(BUILD_SHARED_LIBS)
        add_library(${name}_internals STATIC)
        korvane_join_layers(${name}_internals ${LIBRARY_LAYERS})
        set(visibility PUBLIC)
    else()
        add_library(${name}_internals INTERFACE)
        target_link_libraries(${name}_internals INTERFACE ${name})
        set(visibility INTERFACE)
    endif()
    target_include_directories(${name}_internals ${visibility} "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name}_internals ${visibility} nlohmann_json::nlohmann_json)
endfunction()

# korvane_join_layers(<library> <layer>...): the objects of the layers, and the libraries that they call.
function(korvane_join_layers library)
    set_target_properties(${library} PROPERTIES POSITION_INDEPENDENT_CODE ON LINKER_LANGUAGE CXX)
    target_compile_features(${library} PUBLIC cxx_std_20)
    get_target_property(type ${library} TYPE)
    if(type STREQUAL "SHARED_LIBRARY")
        korvane_hide_others(${library})
        target_link_libraries(${library} PRIVATE "$<BUILD_INTERFACE:korvane_hardening>")
    endif()
    foreach(layer IN LISTS ARGN)
        target_sources(${library} PRIVATE $<TARGET_OBJECTS:korvane_${layer}>)
        get_target_property(libraries korvane_${layer} KORVANE_LIBRARIES)
        target_link_libraries(${library} PRIVATE ${libraries})
        set_property(GLOBAL APPEND PROPERTY KORVANE_LINKED ${libraries})
    endforeach()
endfunction()

# korvane_hide_others(<shared library>): some headers of others ask for their symbols to be seen.
function(korvane_hide_others library)
    if(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
        set(map "${PROJECT_SOURCE_DIR}/cmake/korvane.map")
        target_link_options(${library} PRIVATE "LINKER:--version-script=${map}")
        set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS "${map}")
    endif()
endfunction()
